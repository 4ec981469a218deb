#include "comms/rtfreader.h"

#include <QStringList>
#include <QTextBlock>
#include <QTextDocument>
#include <QTextEdit>
#include <gtest/gtest.h>
#include <ostream>

// Texts in failure messages as text rather than bytes.
static void PrintTo(const QString& text, std::ostream* out) {
    *out << '"' << text.toStdString() << '"';
}

namespace {

// The paragraphs' texts as they are held (toPlainText() would turn line separators and
// no-break spaces into ordinary ones).
QString TextOf(const QTextDocument& document) {
    QStringList paragraphs;
    for (QTextBlock block = document.begin(); block.isValid(); block = block.next())
        paragraphs << block.text();
    return paragraphs.join(u'\n');
}

QString Read(const QString& rtf, QTextDocument& document) {
    ReadRtf(rtf, document);
    return TextOf(document);
}

QString Read(const QString& rtf) {
    QTextDocument document;
    return Read(rtf, document);
}

// The format of the piece of text that holds `text`.
QTextCharFormat FormatOf(const QTextDocument& document, const QString& text) {
    for (QTextBlock block = document.begin(); block.isValid(); block = block.next()) {
        for (auto it = block.begin(); !it.atEnd(); ++it) {
            if (it.fragment().text().contains(text))
                return it.fragment().charFormat();
        }
    }
    ADD_FAILURE() << "no text " << text.toStdString();
    return {};
}

QTextBlockFormat BlockOf(const QTextDocument& document, const QString& text) {
    for (QTextBlock block = document.begin(); block.isValid(); block = block.next()) {
        if (block.text().contains(text))
            return block.blockFormat();
    }
    ADD_FAILURE() << "no paragraph " << text.toStdString();
    return {};
}

TEST(RtfReader, RichTextIsToldFromPlainTextByItsFirstCharacters) {
    EXPECT_TRUE(IsRichText(u"{\\rtf1 x}"));
    EXPECT_FALSE(IsRichText(u" {\\rtf1 x}"));
    EXPECT_FALSE(IsRichText(u"{\\RTF1 x}"));
    EXPECT_FALSE(IsRichText(u"Prix en baisse {\\rtf"));
}

TEST(RtfReader, PlainTextAfterRichTextTakesNoneOfItsFormat) {
    QTextEdit box;
    box.setReadOnly(true);
    SetNewsletterText(*box.document(), QStringLiteral("{\\rtf1{\\colortbl;\\red255\\green0"
                                                      "\\blue0;}\\b\\i\\cf1\\fs40 Rouge}"));
    EXPECT_EQ(FormatOf(*box.document(), "Rouge").fontWeight(), QFont::Bold);
    SetNewsletterText(*box.document(), QStringLiteral("Texte simple"));
    const QTextCharFormat plain = FormatOf(*box.document(), "Texte simple");
    EXPECT_EQ(plain.fontWeight(), QFont::Normal);
    EXPECT_FALSE(plain.fontItalic());
    EXPECT_FALSE(plain.hasProperty(QTextFormat::ForegroundBrush));
    EXPECT_FALSE(plain.hasProperty(QTextFormat::FontPointSize));
}

TEST(RtfReader, ParagraphsLinesTabsAndEscapes) {
    QTextDocument document;
    EXPECT_EQ(Read("{\\rtf1\\ansi Un\\par Deux\\line suite\\tab fin\\par\n"
                   "Accolades \\{ \\} et \\\\ barre}",
                   document),
              QStringLiteral("Un\nDeux\u2028suite\tfin\nAccolades { } et \\ barre"));
    EXPECT_EQ(document.blockCount(), 3) << "\\line stays inside its paragraph";

    EXPECT_EQ(Read("{\\rtf1 a\\~b\\emdash c\\endash d\\bullet\\lquote e\\rquote "
                   "\\ldblquote f\\rdblquote}"),
              QStringLiteral("a\u00A0b\u2014c\u2013d\u2022\u2018e\u2019\u201Cf\u201D"));
    EXPECT_EQ(Read("{\\rtf1 ligne\r\nsuite\\\nfin}"), "lignesuite\nfin")
        << "the file's line breaks are not text; a backslash before one ends the paragraph";
    EXPECT_EQ(Read("{\\rtf1 \\b gras\\b0 normal}"), "grasnormal")
        << "the space after a control word belongs to it";
}

TEST(RtfReader, ParagraphFormatsApplyToTheParagraphTheyEnd) {
    QTextDocument document;
    Read("{\\rtf1\\qc Titre\\par\\pard\\li720\\ri360\\fi-360\\sb120\\sa240 Corps\\par"
         "\\pard\\qr Droite\\par\\qj Justifie}",
         document);
    EXPECT_EQ(BlockOf(document, "Titre").alignment(), Qt::AlignHCenter);
    const QTextBlockFormat body = BlockOf(document, "Corps");
    EXPECT_EQ(body.alignment(), Qt::AlignLeft) << "\\pard resets the alignment";
    EXPECT_DOUBLE_EQ(body.leftMargin(), 48);
    EXPECT_DOUBLE_EQ(body.rightMargin(), 24);
    EXPECT_DOUBLE_EQ(body.textIndent(), -24);
    EXPECT_DOUBLE_EQ(body.topMargin(), 8);
    EXPECT_DOUBLE_EQ(body.bottomMargin(), 16);
    EXPECT_EQ(BlockOf(document, "Droite").alignment(), Qt::AlignRight);
    EXPECT_EQ(BlockOf(document, "Justifie").alignment(), Qt::AlignJustify)
        << "the last paragraph needs no \\par";
}

TEST(RtfReader, CharacterFormatsToggleAndGroupsRestoreThem) {
    QTextDocument document;
    Read("{\\rtf1 avant {\\b gras {\\i grasitalique} gras2} \\ul souligne\\ul0 "
         "\\strike barre\\strike0 \\b1 G\\b0 N \\i\\ul\\b tout\\plain rien}",
         document);
    EXPECT_EQ(FormatOf(document, "avant").fontWeight(), QFont::Normal);
    EXPECT_EQ(FormatOf(document, "gras2").fontWeight(), QFont::Bold);
    EXPECT_FALSE(FormatOf(document, "gras2").fontItalic()) << "the inner group's italic ended";
    const QTextCharFormat both = FormatOf(document, "grasitalique");
    EXPECT_EQ(both.fontWeight(), QFont::Bold);
    EXPECT_TRUE(both.fontItalic());
    EXPECT_TRUE(FormatOf(document, "souligne").fontUnderline());
    EXPECT_FALSE(FormatOf(document, "barre").fontUnderline());
    EXPECT_TRUE(FormatOf(document, "barre").fontStrikeOut());
    EXPECT_EQ(FormatOf(document, "G").fontWeight(), QFont::Bold);
    EXPECT_EQ(FormatOf(document, "N").fontWeight(), QFont::Normal);
    EXPECT_TRUE(FormatOf(document, "tout").fontUnderline());
    const QTextCharFormat plain = FormatOf(document, "rien");
    EXPECT_EQ(plain.fontWeight(), QFont::Normal);
    EXPECT_FALSE(plain.fontItalic());
    EXPECT_FALSE(plain.fontUnderline());
}

TEST(RtfReader, FontSizesFamiliesAndColoursComeFromTheTables) {
    QTextDocument document;
    Read("{\\rtf1\\ansi\\deff1{\\fonttbl{\\f0\\fswiss Arial;}{\\f1\\froman Times New Roman;}}"
         "{\\colortbl;\\red255\\green0\\blue0;\\red0\\green0\\blue128;}"
         "Defaut \\f0\\fs32 Grand {\\cf1 Rouge} {\\cf2\\highlight1 Marine} {\\cf9 Hors} "
         "\\fs0 Garde \\plain Simple}",
         document);
    EXPECT_EQ(TextOf(document), "Defaut Grand Rouge Marine Hors Garde Simple")
        << "the tables' texts are not shown";
    EXPECT_EQ(FormatOf(document, "Defaut").fontFamilies().toStringList(),
              QStringList("Times New Roman"))
        << "\\deff names the font of text without \\f";
    const QTextCharFormat big = FormatOf(document, "Grand");
    EXPECT_EQ(big.fontFamilies().toStringList(), QStringList("Arial"));
    EXPECT_DOUBLE_EQ(big.fontPointSize(), 16);
    EXPECT_EQ(FormatOf(document, "Rouge").foreground().color(), QColor(255, 0, 0));
    EXPECT_FALSE(FormatOf(document, "Grand").hasProperty(QTextFormat::ForegroundBrush))
        << "colour 0 is the automatic colour";
    EXPECT_EQ(FormatOf(document, "Marine").foreground().color(), QColor(0, 0, 128));
    EXPECT_EQ(FormatOf(document, "Marine").background().color(), QColor(255, 0, 0));
    EXPECT_FALSE(FormatOf(document, "Hors").hasProperty(QTextFormat::ForegroundBrush))
        << "a colour the table lacks is the automatic colour";
    EXPECT_DOUBLE_EQ(FormatOf(document, "Garde").fontPointSize(), 16) << "\\fs0 is ignored";
    EXPECT_FALSE(FormatOf(document, "Simple").hasProperty(QTextFormat::FontPointSize));
}

// The text of each rich text, and why it reads so.
TEST(RtfReader, TextOfCodePagesUnicodeSkippedDestinationsAndDamage) {
    const struct {
        const char* rtf;
        QString text;
        const char* why;
    } cases[] = {
        {"{\\rtf1\\ansi Caf\\'e9 \\'80 \\'93ok\\'94}", QStringLiteral("Café € \u201Cok\u201D"),
         "Windows-1252 by default"},
        {"{\\rtf1\\ansi\\ansicpg1251 \\'cf\\'f0\\'e8}", QStringLiteral("При"), "\\ansicpg"},
        {"{\\rtf1\\ansi\\ansicpg99999 \\'e9}", QStringLiteral("é"),
         "an unknown code page is read as Windows-1252"},
        {"{\\rtf1\\pca \\'82t\\'82}", QStringLiteral("été"), "\\pca is code page 850"},
        {"{\\rtf1\\ansi{\\fonttbl{\\f0 Arial;}{\\f1\\fcharset204 Arial Cyr;}}\\f0\\'e9 \\f1\\'e9}",
         QStringLiteral("é й"), "a font's character set names its code page"},
        {"{\\rtf1\\ansi\\ansicpg932 \\'93\\'fa\\'96\\'7b}", QStringLiteral("日本"),
         "two bytes of one character"},
        {"{\\rtf1 \\'e \\'zz\\'}", "e zz", "a broken escape is left out"},
        {"{\\rtf1 \\u8364\\'80 euro \\u233?t\\u233?}", QStringLiteral("€ euro été"),
         "\\u skips one fallback character"},
        {"{\\rtf1\\uc2 \\u8364\\'80\\'81x \\uc0\\u8364 y}", QStringLiteral("€x €y"), "\\uc"},
        {"{\\rtf1 \\u-4064? \\u-10179?\\u-8704?}", QStringLiteral("\uF020 😀"),
         "negative values are above 32767; surrogate pairs make one character"},
        {"{\\rtf1 {\\uc3\\u233 ab}cd}", QStringLiteral("écd"), "the fallback ends with its group"},
        {"{\\rtf1 \\u-10179? seul}", QStringLiteral("\uFFFD seul"),
         "half a surrogate pair is not a character"},
        {"{\\rtf1{\\stylesheet{\\s0 Normal;}}{\\info{\\title T}{\\author A}}"
         "{\\*\\generator Riched20;}{\\*\\inconnu {imbrique} texte}"
         "{\\header entete}{\\pict\\pngblip 89504e47}Vu"
         "{\\field{\\*\\fldinst HYPERLINK \"x\"}{\\fldrslt lien}}"
         "{\\*\\bkmkstart b}\\bin4 {}\\a fin}",
         "Vulien fin", "destinations that are not text are left out"},
        {"{\\rtf1 \\motinconnu12 texte\\x}", "texte", "unknown control words are ignored"},
        {"{\\rtf1 pas de fin {\\b gras", "pas de fin gras", "unclosed groups"},
        {"{\\rtf1 fin} apres", "fin", "nothing after the outer group"},
        {"{\\rtf1 a}}}}", "a", "too many closings"},
        {"{\\rtf1 barre finale\\", "barre finale", "a backslash at the end"},
        {"{\\rtf1 \\fs999999999999 \\li-99999999999 \\u99999999999 \\bin99999999 x}",
         QStringLiteral("\uFFFD"), "numbers out of range are bounded; \\bin stops at the end"},
        {"{\\rtf1\\ansi\\deff0{\\fonttbl{\\f0 Sans fin", "", "a font table without end"},
        {"{\\rtf1 a\x01\x02"
         "b\tc}",
         "ab\tc", "control characters are not text"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.why);
        EXPECT_EQ(Read(QString::fromUtf8(c.rtf)), c.text);
    }
    QTextDocument document;
    Read("{\\rtf1 \\fs65000 \\li40000 x}", document);
    EXPECT_DOUBLE_EQ(FormatOf(document, "x").fontPointSize(), 1638);
    EXPECT_DOUBLE_EQ(BlockOf(document, "x").leftMargin(), 31680 / 15.0);
}

TEST(RtfReader, DeepNestingIsReadWithoutDeepRecursionOrMemory) {
    const int depth = 100000;
    const QString rtf =
        "{\\rtf1 debut" + QString(depth, u'{') + "profond" + QString(depth, u'}') + " fin}";
    EXPECT_EQ(Read(rtf), "debut fin") << "the text of groups nested too deep is left out";
    const QString shallow = "{\\rtf1 a" + QString(50, u'{') + "\\b b" + QString(50, u'}') + "c}";
    QTextDocument document;
    EXPECT_EQ(Read(shallow, document), "abc");
    EXPECT_EQ(FormatOf(document, "c").fontWeight(), QFont::Normal);
}

} // namespace
