#include "comms/rtfreader.h"

#include "comms/rtfwords.h"

#include <QColor>
#include <QList>
#include <QStringDecoder>
#include <QTextBlockFormat>
#include <QTextCharFormat>
#include <QTextCursor>
#include <QTextDocument>
#include <algorithm>
#include <limits>
#include <map>
#include <vector>

namespace {

// Groups nested deeper than this are read for their braces only and their content is left out,
// so a newsletter of a million "{" costs no more memory than its text.
constexpr int MaxDepth = 200;
// Twips (1/1440 inch) per pixel of the document at 96 pixels per inch.
constexpr double TwipsPerPixel = 15.0;
// Indents and spacing beyond 22 inches are taken as 22 inches.
constexpr int MaxTwips = 31680;
constexpr double MaxPointSize = 1638;
constexpr int DefaultCodePage = 1252;
constexpr qsizetype MaxFontNameLength = 100;

enum class Destination { Text, FontTable, ColorTable, Skipped };

struct CharProps {
    bool bold = false;
    bool italic = false;
    bool underline = false;
    bool strikeOut = false;
    int halfPoints = 0; // 0: the document's default size
    int color = 0;      // entries of the colour table
    int highlight = 0;
    int font = -1; // -1: the document's default font (\deff)
    bool operator==(const CharProps&) const = default;
};

struct ParagraphProps {
    Qt::Alignment alignment = Qt::AlignLeft;
    int leftTwips = 0;
    int rightTwips = 0;
    int firstLineTwips = 0;
    int beforeTwips = 0;
    int afterTwips = 0;
};

// What a group changes and its closing brace restores.
struct GroupState {
    CharProps chars;
    ParagraphProps paragraph;
    Destination destination = Destination::Text;
    int unicodeFallback = 1; // \ucN: the characters written after each \uN for older readers
};

struct FontEntry {
    QString name;
    int codePage = 0; // 0: the document's code page
};

bool IsAsciiLetter(QChar c) {
    return (c >= u'a' && c <= u'z') || (c >= u'A' && c <= u'Z');
}

bool IsDigit(QChar c) {
    return c >= u'0' && c <= u'9';
}

int HexValue(QChar c) {
    if (IsDigit(c))
        return c.unicode() - u'0';
    if (c >= u'a' && c <= u'f')
        return c.unicode() - u'a' + 10;
    if (c >= u'A' && c <= u'F')
        return c.unicode() - u'A' + 10;
    return -1;
}

int Twips(int value) {
    return std::clamp(value, -MaxTwips, MaxTwips);
}

// A character the document cannot hold alone (half of a surrogate pair) becomes U+FFFD.
void ReplaceLoneSurrogates(QString& text) {
    for (qsizetype i = 0; i < text.size(); ++i) {
        const QChar c = text.at(i);
        if (c.isHighSurrogate() && i + 1 < text.size() && text.at(i + 1).isLowSurrogate())
            ++i;
        else if (c.isSurrogate())
            text[i] = QChar::ReplacementCharacter;
    }
}

class RtfReader {
public:
    RtfReader(QStringView input, QTextDocument& document) : in_(input), cursor_(&document) {}

    void read() {
        cursor_.beginEditBlock();
        while (pos_ < in_.size() && !ended_) {
            const QChar c = in_.at(pos_++);
            if (c == u'{')
                openGroup();
            else if (c == u'}')
                closeGroup();
            else if (c == u'\\')
                readControl();
            else if (c != u'\r' && c != u'\n') // the file's line breaks are not the text's
                plainCharacter(c);
        }
        if (!ended_)
            finish();
        cursor_.endEditBlock();
    }

private:
    // Tokens.

    void openGroup() {
        endToken();
        fallbackLeft_ = 0;
        if (droppedDepth_ > 0 || stack_.size() >= MaxDepth) {
            ++droppedDepth_;
            return;
        }
        stack_.push_back(state_);
    }

    void closeGroup() {
        endToken();
        fallbackLeft_ = 0;
        if (droppedDepth_ > 0) {
            --droppedDepth_;
            return;
        }
        if (state_.destination == Destination::FontTable)
            commitFont();
        if (stack_.size() <= 1) {
            // The outer group ends the document.
            finish();
            ended_ = true;
            return;
        }
        state_ = stack_.back();
        stack_.pop_back();
    }

    void readControl() {
        if (pos_ >= in_.size())
            return;
        const QChar c = in_.at(pos_);
        if (IsAsciiLetter(c)) {
            readControlWord();
            return;
        }
        ++pos_;
        if (c == u'\'') {
            readHexByte();
            return;
        }
        endToken();
        if (takeSkipped())
            return;
        controlSymbol(c);
    }

    void readControlWord() {
        const qsizetype start = pos_;
        while (pos_ < in_.size() && IsAsciiLetter(in_.at(pos_)))
            ++pos_;
        const QStringView word = in_.sliced(start, pos_ - start);
        bool negative = false;
        if (pos_ + 1 < in_.size() && in_.at(pos_) == u'-' && IsDigit(in_.at(pos_ + 1))) {
            negative = true;
            ++pos_;
        }
        bool hasParam = false;
        qint64 value = 0;
        while (pos_ < in_.size() && IsDigit(in_.at(pos_))) {
            hasParam = true;
            value = std::min<qint64>(value * 10 + (in_.at(pos_).unicode() - u'0'),
                                     qint64(std::numeric_limits<int>::max()) + 1);
            ++pos_;
        }
        if (pos_ < in_.size() && in_.at(pos_) == u' ')
            ++pos_; // the space that ends a control word belongs to it
        const int param =
            int(std::clamp<qint64>(negative ? -value : value, std::numeric_limits<int>::min(),
                                   std::numeric_limits<int>::max()));
        endToken();
        if (word == u"bin") {
            // Binary data of the given length follows; it is never text.
            pos_ += std::clamp<qint64>(param, 0, in_.size() - pos_);
            return;
        }
        if (takeSkipped())
            return;
        if (const QChar shown = WordCharacter(word); !shown.isNull())
            put(shown);
        else
            controlWord(LookUpRtfWord(word), hasParam, param);
    }

    void readHexByte() {
        if (pos_ + 1 >= in_.size())
            return;
        const int high = HexValue(in_.at(pos_));
        const int low = HexValue(in_.at(pos_ + 1));
        if (high < 0 || low < 0)
            return;
        pos_ += 2;
        if (takeSkipped())
            return;
        // Consecutive bytes are decoded together: a character may take two in some code pages.
        bytes_.append(char(high * 16 + low));
    }

    void plainCharacter(QChar c) {
        endToken();
        if (takeSkipped())
            return;
        put(c);
    }

    // Everything but \'hh ends a run of bytes.
    void endToken() {
        if (bytes_.isEmpty())
            return;
        QStringDecoder& decoder = decoderFor(bytesCodePage());
        decoder.resetState();
        const QString text = decoder.decode(bytes_);
        bytes_.clear();
        for (QChar c : text)
            put(c);
    }

    // True when the token is left out: inside a group nested too deep, or the fallback of the
    // last \uN.
    bool takeSkipped() {
        if (droppedDepth_ > 0)
            return true;
        if (fallbackLeft_ > 0) {
            --fallbackLeft_;
            return true;
        }
        return false;
    }

    void controlSymbol(QChar c) {
        if (c == u'*')
            skipDestination();
        else if (c == u'\r' || c == u'\n')
            endParagraph();
        else if (const QChar shown = SymbolCharacter(c); !shown.isNull())
            put(shown);
    }

    void controlWord(RtfWord word, bool hasParam, int param) {
        if (!characterWord(word, !hasParam || param != 0, param) && !paragraphWord(word, param))
            documentWord(word, param);
    }

    // Character formats; `on` is false for "\b0" and the like.
    bool characterWord(RtfWord word, bool on, int param) {
        CharProps& chars = state_.chars;
        switch (word) {
        case RtfWord::Bold:
            chars.bold = on;
            break;
        case RtfWord::Italic:
            chars.italic = on;
            break;
        case RtfWord::Underline:
            chars.underline = on;
            break;
        case RtfWord::UnderlineNone:
            chars.underline = false;
            break;
        case RtfWord::Strike:
            chars.strikeOut = on;
            break;
        case RtfWord::FontSize:
            chars.halfPoints = param > 0 ? param : chars.halfPoints;
            break;
        case RtfWord::Color:
            chars.color = param;
            break;
        case RtfWord::Highlight:
            chars.highlight = param;
            break;
        case RtfWord::Font:
            font(param);
            break;
        case RtfWord::Plain:
            chars = CharProps();
            break;
        default:
            return false;
        }
        return true;
    }

    bool paragraphWord(RtfWord word, int param) {
        ParagraphProps& paragraph = state_.paragraph;
        switch (word) {
        case RtfWord::Par:
            endParagraph();
            break;
        case RtfWord::Pard:
            paragraph = ParagraphProps();
            break;
        case RtfWord::AlignLeft:
            paragraph.alignment = Qt::AlignLeft;
            break;
        case RtfWord::AlignRight:
            paragraph.alignment = Qt::AlignRight;
            break;
        case RtfWord::AlignCenter:
            paragraph.alignment = Qt::AlignHCenter;
            break;
        case RtfWord::AlignJustify:
            paragraph.alignment = Qt::AlignJustify;
            break;
        case RtfWord::LeftIndent:
            paragraph.leftTwips = Twips(param);
            break;
        case RtfWord::RightIndent:
            paragraph.rightTwips = Twips(param);
            break;
        case RtfWord::FirstIndent:
            paragraph.firstLineTwips = Twips(param);
            break;
        case RtfWord::SpaceBefore:
            paragraph.beforeTwips = Twips(param);
            break;
        case RtfWord::SpaceAfter:
            paragraph.afterTwips = Twips(param);
            break;
        default:
            return false;
        }
        return true;
    }

    // Unicode characters, code pages, the tables and the destinations.
    void documentWord(RtfWord word, int param) {
        switch (word) {
        case RtfWord::UnicodeFallback:
            state_.unicodeFallback = std::clamp(param, 0, 16);
            break;
        case RtfWord::Unicode:
            unicode(param);
            break;
        case RtfWord::AnsiCodePage:
            codePage_ = CodePageName(param) ? param : DefaultCodePage;
            break;
        case RtfWord::Ansi:
            codePage_ = DefaultCodePage;
            break;
        case RtfWord::Mac:
            codePage_ = 10000;
            break;
        case RtfWord::Pc:
            codePage_ = 437;
            break;
        case RtfWord::Pca:
            codePage_ = 850;
            break;
        case RtfWord::DefaultFont:
            defaultFont_ = param;
            break;
        case RtfWord::Charset:
            fontEntry_.codePage = CharsetCodePage(param);
            break;
        case RtfWord::Red:
            colorPart(red_, param);
            break;
        case RtfWord::Green:
            colorPart(green_, param);
            break;
        case RtfWord::Blue:
            colorPart(blue_, param);
            break;
        case RtfWord::FontTable:
            enterDestination(Destination::FontTable);
            break;
        case RtfWord::ColorTable:
            enterDestination(Destination::ColorTable);
            break;
        case RtfWord::Skipped:
            skipDestination();
            break;
        default:
            break;
        }
    }

    // Destinations.

    void enterDestination(Destination destination) {
        if (state_.destination != Destination::Skipped)
            state_.destination = destination;
    }

    void skipDestination() { state_.destination = Destination::Skipped; }

    void font(int number) {
        if (state_.destination == Destination::FontTable) {
            commitFont();
            fontNumber_ = number;
        } else {
            state_.chars.font = number;
        }
    }

    void commitFont() {
        if (fontNumber_ < 0)
            return;
        fontEntry_.name = fontEntry_.name.trimmed();
        fonts_[fontNumber_] = fontEntry_;
        fontNumber_ = -1;
        fontEntry_ = FontEntry();
    }

    void colorPart(int& part, int value) {
        if (state_.destination == Destination::ColorTable)
            part = std::clamp(value, 0, 255);
    }

    void commitColor() {
        const bool automatic = red_ < 0 && green_ < 0 && blue_ < 0;
        colors_.append(automatic
                           ? QColor()
                           : QColor(std::max(red_, 0), std::max(green_, 0), std::max(blue_, 0)));
        red_ = green_ = blue_ = -1;
    }

    // \uN is a signed 16-bit number: the characters above 32767 come negative.
    void unicode(int value) {
        const bool inRange = value >= -32768 && value <= 65535;
        put(inRange ? QChar(char16_t(value < 0 ? value + 65536 : value))
                    : QChar(QChar::ReplacementCharacter));
        fallbackLeft_ = state_.unicodeFallback;
    }

    // Text, by destination.

    void put(QChar c) {
        switch (state_.destination) {
        case Destination::Text:
            if (c.unicode() < 0x20 && c != u'\t')
                return;
            if (!(state_.chars == runProps_)) {
                flushRun();
                runProps_ = state_.chars;
            }
            run_.append(c);
            break;
        case Destination::FontTable:
            if (c == u';')
                commitFont();
            else if (c.unicode() >= 0x20 && fontEntry_.name.size() < MaxFontNameLength)
                fontEntry_.name.append(c);
            break;
        case Destination::ColorTable:
            if (c == u';')
                commitColor();
            break;
        case Destination::Skipped:
            break;
        }
    }

    void endParagraph() {
        if (state_.destination != Destination::Text)
            return;
        flushRun();
        cursor_.setBlockFormat(blockFormat(state_.paragraph));
        cursor_.insertBlock();
    }

    void finish() {
        endToken();
        flushRun();
        cursor_.setBlockFormat(blockFormat(state_.paragraph));
    }

    void flushRun() {
        if (run_.isEmpty())
            return;
        ReplaceLoneSurrogates(run_);
        cursor_.insertText(run_, charFormat(runProps_));
        run_.clear();
    }

    // Formats.

    QTextCharFormat charFormat(const CharProps& props) const {
        QTextCharFormat format;
        if (props.bold)
            format.setFontWeight(QFont::Bold);
        if (props.italic)
            format.setFontItalic(true);
        if (props.underline)
            format.setFontUnderline(true);
        if (props.strikeOut)
            format.setFontStrikeOut(true);
        if (props.halfPoints > 0)
            format.setFontPointSize(std::min(props.halfPoints / 2.0, MaxPointSize));
        if (const QColor color = tableColor(props.color); color.isValid())
            format.setForeground(color);
        if (const QColor color = tableColor(props.highlight); color.isValid())
            format.setBackground(color);
        const auto entry = fonts_.find(props.font >= 0 ? props.font : defaultFont_);
        if (entry != fonts_.end() && !entry->second.name.isEmpty())
            format.setFontFamilies({entry->second.name});
        return format;
    }

    static QTextBlockFormat blockFormat(const ParagraphProps& props) {
        QTextBlockFormat format;
        format.setAlignment(props.alignment);
        format.setLeftMargin(std::max(props.leftTwips, 0) / TwipsPerPixel);
        format.setRightMargin(std::max(props.rightTwips, 0) / TwipsPerPixel);
        format.setTextIndent(props.firstLineTwips / TwipsPerPixel);
        format.setTopMargin(std::max(props.beforeTwips, 0) / TwipsPerPixel);
        format.setBottomMargin(std::max(props.afterTwips, 0) / TwipsPerPixel);
        return format;
    }

    QColor tableColor(int index) const {
        return index >= 0 && index < colors_.size() ? colors_.at(index) : QColor();
    }

    // Code pages.

    int bytesCodePage() const {
        const auto entry = fonts_.find(state_.chars.font >= 0 ? state_.chars.font : defaultFont_);
        if (entry != fonts_.end() && entry->second.codePage != 0)
            return entry->second.codePage;
        return codePage_;
    }

    QStringDecoder& decoderFor(int codePage) {
        auto found = decoders_.find(codePage);
        if (found == decoders_.end()) {
            const char* name = CodePageName(codePage);
            QStringDecoder decoder(name ? name : CodePageName(DefaultCodePage));
            if (!decoder.isValid())
                decoder = QStringDecoder(CodePageName(DefaultCodePage));
            found = decoders_.emplace(codePage, std::move(decoder)).first;
        }
        return found->second;
    }

    QStringView in_;
    qsizetype pos_ = 0;
    QTextCursor cursor_;
    bool ended_ = false;

    GroupState state_;
    std::vector<GroupState> stack_;
    qsizetype droppedDepth_ = 0;
    int fallbackLeft_ = 0;
    QByteArray bytes_;

    QString run_;
    CharProps runProps_;

    int codePage_ = DefaultCodePage;
    std::map<int, QStringDecoder> decoders_; // at most one per known code page
    int defaultFont_ = -1;
    std::map<int, FontEntry> fonts_;
    int fontNumber_ = -1;
    FontEntry fontEntry_;
    QList<QColor> colors_;
    int red_ = -1;
    int green_ = -1;
    int blue_ = -1;
};

} // namespace

bool IsRichText(QStringView text) {
    return text.startsWith(u"{\\rtf");
}

void ReadRtf(QStringView rtf, QTextDocument& document) {
    const bool undo = document.isUndoRedoEnabled();
    document.setUndoRedoEnabled(false);
    document.clear();
    RtfReader(rtf, document).read();
    document.setUndoRedoEnabled(undo);
}

void SetNewsletterText(QTextDocument& document, const QString& text) {
    if (IsRichText(text)) {
        ReadRtf(text, document);
        return;
    }
    document.setPlainText(text);
}
