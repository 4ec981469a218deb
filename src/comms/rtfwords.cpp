#include "comms/rtfwords.h"

#include <QHash>
#include <QString>
#include <QStringList>
#include <utility>

namespace {

struct WordNames {
    RtfWord word;
    const char16_t* names; // separated by spaces
};

const QHash<QString, RtfWord>& Vocabulary() {
    static const QHash<QString, RtfWord> vocabulary = [] {
        const WordNames table[] = {
            {RtfWord::Par, u"par sect page row"},
            {RtfWord::Bold, u"b"},
            {RtfWord::Italic, u"i"},
            {RtfWord::Underline, u"ul uld uldb uldash ulth ulw ulwave"},
            {RtfWord::UnderlineNone, u"ulnone"},
            {RtfWord::Strike, u"strike"},
            {RtfWord::FontSize, u"fs"},
            {RtfWord::Color, u"cf"},
            {RtfWord::Highlight, u"cb highlight"},
            {RtfWord::Font, u"f"},
            {RtfWord::Plain, u"plain"},
            {RtfWord::Pard, u"pard"},
            {RtfWord::AlignLeft, u"ql"},
            {RtfWord::AlignRight, u"qr"},
            {RtfWord::AlignCenter, u"qc"},
            {RtfWord::AlignJustify, u"qj"},
            {RtfWord::LeftIndent, u"li"},
            {RtfWord::RightIndent, u"ri"},
            {RtfWord::FirstIndent, u"fi"},
            {RtfWord::SpaceBefore, u"sb"},
            {RtfWord::SpaceAfter, u"sa"},
            {RtfWord::UnicodeFallback, u"uc"},
            {RtfWord::Unicode, u"u"},
            {RtfWord::AnsiCodePage, u"ansicpg"},
            {RtfWord::Ansi, u"ansi"},
            {RtfWord::Mac, u"mac"},
            {RtfWord::Pc, u"pc"},
            {RtfWord::Pca, u"pca"},
            {RtfWord::DefaultFont, u"deff"},
            {RtfWord::Charset, u"fcharset"},
            {RtfWord::Red, u"red"},
            {RtfWord::Green, u"green"},
            {RtfWord::Blue, u"blue"},
            {RtfWord::FontTable, u"fonttbl"},
            {RtfWord::ColorTable, u"colortbl"},
            {RtfWord::Skipped,
             u"stylesheet info pict object objdata footnote annotation pn fldinst"},
            {RtfWord::Skipped, u"header headerl headerr headerf footer footerl footerr footerf"},
            {RtfWord::Skipped, u"listtable listoverridetable revtbl filetbl rsidtbl xmlnstbl"},
            {RtfWord::Skipped, u"generator themedata colorschememapping datastore latentstyles"},
            {RtfWord::Skipped, u"bkmkstart bkmkend"},
        };
        QHash<QString, RtfWord> words;
        for (const WordNames& entry : table) {
            for (const QString& name : QString::fromUtf16(entry.names).split(u' '))
                words.insert(name, entry.word);
        }
        return words;
    }();
    return vocabulary;
}

struct CodePage {
    int number;
    const char* name;
};

constexpr CodePage CodePages[] = {
    {437, "IBM437"},        {850, "IBM850"},        {874, "windows-874"},   {932, "Shift_JIS"},
    {936, "GBK"},           {949, "windows-949"},   {950, "Big5"},          {1250, "windows-1250"},
    {1251, "windows-1251"}, {1252, "windows-1252"}, {1253, "windows-1253"}, {1254, "windows-1254"},
    {1255, "windows-1255"}, {1256, "windows-1256"}, {1257, "windows-1257"}, {1258, "windows-1258"},
    {10000, "macintosh"}};

// The code page of each font character set (\fcharset) that is not the document's own.
constexpr std::pair<int, int> CharsetCodePages[] = {
    {77, 10000}, {128, 932},  {129, 949},  {134, 936},  {136, 950},
    {161, 1253}, {162, 1254}, {163, 1258}, {177, 1255}, {178, 1256},
    {186, 1257}, {204, 1251}, {222, 874},  {238, 1250}, {255, 437}};

struct WordCharacterEntry {
    const char16_t* word;
    char16_t character;
};

constexpr WordCharacterEntry WordCharacters[] = {{u"line", QChar::LineSeparator},
                                                 {u"tab", u'\t'},
                                                 {u"cell", u'\t'},
                                                 {u"nestcell", u'\t'},
                                                 {u"emdash", 0x2014},
                                                 {u"endash", 0x2013},
                                                 {u"emspace", 0x2003},
                                                 {u"enspace", 0x2002},
                                                 {u"bullet", 0x2022},
                                                 {u"lquote", 0x2018},
                                                 {u"rquote", 0x2019},
                                                 {u"ldblquote", 0x201C},
                                                 {u"rdblquote", 0x201D}};

// No control word the reader knows is longer.
constexpr qsizetype LongestWord = 32;

} // namespace

const char* CodePageName(int codePage) {
    for (const CodePage& known : CodePages) {
        if (known.number == codePage)
            return known.name;
    }
    return nullptr;
}

int CharsetCodePage(int charset) {
    for (const auto& [set, codePage] : CharsetCodePages) {
        if (set == charset)
            return codePage;
    }
    return 0;
}

RtfWord LookUpRtfWord(QStringView word) {
    if (word.size() > LongestWord)
        return RtfWord::None;
    return Vocabulary().value(word.toString(), RtfWord::None);
}

QChar WordCharacter(QStringView word) {
    for (const WordCharacterEntry& entry : WordCharacters) {
        if (word == QStringView(entry.word))
            return entry.character;
    }
    return {};
}

QChar SymbolCharacter(QChar symbol) {
    switch (symbol.unicode()) {
    case u'\\':
    case u'{':
    case u'}':
        return symbol;
    case u'~':
        return QChar(0x00A0); // no-break space
    case u'_':
        return QChar(0x2011); // no-break hyphen
    case u'-':
        return QChar(0x00AD); // optional hyphen
    default:
        return {};
    }
}
