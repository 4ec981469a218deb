#include "comms/rtfreader.h"

#include <QStringList>
#include <QTextBlock>
#include <QTextDocument>
#include <gtest/gtest.h>
#include <ostream>

// Texts in failure messages as text rather than bytes.
static void PrintTo(const QString& text, std::ostream* out) {
    *out << '"' << text.toStdString() << '"';
}

namespace {

// Each paragraph of the rich text read, as `show` gives it.
template <typename Show> QStringList EachParagraph(const QString& rtf, Show show) {
    QTextDocument document;
    ReadRtf(rtf, document);
    QStringList paragraphs;
    for (QTextBlock block = document.begin(); block.isValid(); block = block.next())
        paragraphs << show(block);
    return paragraphs;
}

// The paragraphs' texts as they are held (toPlainText() would turn line separators and
// no-break spaces into ordinary ones).
QString Read(const QString& rtf) {
    return EachParagraph(rtf, [](const QTextBlock& block) { return block.text(); }).join(u'\n');
}

// The marks of a character format: b(old), i(talic), u(nderline), s(trike-out), the size, the
// family, the colour and the highlight.
QString Marks(const QTextCharFormat& f) {
    QStringList marks;
    const auto mark = [&marks](bool on, const QString& text) {
        if (on)
            marks << text;
    };
    mark(f.fontWeight() == QFont::Bold, "b");
    mark(f.fontItalic(), "i");
    mark(f.fontUnderline(), "u");
    mark(f.fontStrikeOut(), "s");
    mark(f.hasProperty(QTextFormat::FontPointSize), QString::number(f.fontPointSize()) + "pt");
    mark(f.hasProperty(QTextFormat::FontFamilies), f.fontFamilies().toStringList().join(u','));
    mark(f.hasProperty(QTextFormat::ForegroundBrush), f.foreground().color().name());
    mark(f.hasProperty(QTextFormat::BackgroundBrush), "on " + f.background().color().name());
    return marks.join(u' ');
}

// The pieces of text of the rich text read, each as "text|marks".
QStringList Pieces(const QString& rtf) {
    return EachParagraph(rtf, [](const QTextBlock& block) {
        QStringList pieces;
        for (auto it = block.begin(); !it.atEnd(); ++it)
            pieces << it.fragment().text() + u'|' + Marks(it.fragment().charFormat());
        return pieces;
    });
}

// Each paragraph as "text|alignment left right first-line before after": Qt's alignment
// number (1 left, 2 right, 4 centre, 8 justified), then the indents and spacing in pixels.
QStringList Paragraphs(const QString& rtf) {
    return EachParagraph(rtf, [](const QTextBlock& block) -> QString {
        const QTextBlockFormat f = block.blockFormat();
        return block.text() + QString::asprintf("|%d %g %g %g %g %g", int(f.alignment()),
                                                f.leftMargin(), f.rightMargin(), f.textIndent(),
                                                f.topMargin(), f.bottomMargin());
    });
}

TEST(RtfReader, RichTextIsToldFromPlainTextByItsFirstCharacters) {
    EXPECT_TRUE(IsRichText(u"{\\rtf1 x}"));
    EXPECT_FALSE(IsRichText(u" {\\rtf1 x}"));
    EXPECT_FALSE(IsRichText(u"{\\RTF1 x}"));
}

TEST(RtfReader, ParagraphFormatsApplyToTheParagraphTheyEnd) {
    // \pard resets the alignment; the last paragraph needs no \par.
    EXPECT_EQ(Paragraphs("{\\rtf1\\qc Titre\\par\\pard\\li720\\ri360\\fi-360\\sb120\\sa240 "
                         "Corps\\par\\pard\\qr Droite\\par\\qj Justifie}"),
              QStringList({"Titre|4 0 0 0 0 0", "Corps|1 48 24 -24 8 16", "Droite|2 0 0 0 0 0",
                           "Justifie|8 0 0 0 0 0"}));
}

TEST(RtfReader, CharacterFormatsToggleAndGroupsRestoreThem) {
    EXPECT_EQ(Pieces("{\\rtf1 avant {\\b gras {\\i grasitalique} gras2} \\ul souligne\\ul0 "
                     "\\strike barre\\strike0 \\b1 G\\b0 N \\i\\ul\\b tout\\plain rien}"),
              QStringList({"avant |", "gras |b", "grasitalique|b i", " gras2|b", " |", "souligne|u",
                           "barre|s", "G|b", "N |", "tout|b i u", "rien|"}));
}

// \deff names the font of text without \f; colour 0 and colours the table lacks are the
// automatic colour; \fs0 is ignored; the tables' texts are not shown.
TEST(RtfReader, FontSizesFamiliesAndColoursComeFromTheTables) {
    EXPECT_EQ(
        Pieces("{\\rtf1\\ansi\\deff1{\\fonttbl{\\f0\\fswiss Arial;}{\\f1\\froman Times New "
               "Roman;}}{\\colortbl;\\red255\\green0\\blue0;\\red0\\green0\\blue128;}"
               "Defaut \\f0\\fs32 Grand {\\cf1 Rouge} {\\cf2\\highlight1 Marine} {\\cf9 Hors} "
               "\\fs0 Garde \\plain Simple}"),
        QStringList({"Defaut |Times New Roman", "Grand |16pt Arial", "Rouge|16pt Arial #ff0000",
                     " |16pt Arial", "Marine|16pt Arial #000080 on #ff0000",
                     " Hors Garde |16pt Arial", "Simple|Times New Roman"}));
}

TEST(RtfReader, TextOfEscapesCodePagesUnicodeSkippedDestinationsAndDamage) {
    const struct {
        const char* rtf;
        QString text;
        const char* why;
    } cases[] = {
        {"{\\rtf1\\ansi Un\\par Deux\\line suite\\tab fin\\par\n"
         "Accolades \\{ \\} et \\\\ barre}",
         QStringLiteral("Un\nDeux\u2028suite\tfin\nAccolades { } et \\ barre"),
         "\\line stays inside its paragraph"},
        {"{\\rtf1 a\\~b\\emdash c\\endash d\\bullet\\lquote e\\rquote \\ldblquote f\\rdblquote}",
         QStringLiteral("a\u00A0b\u2014c\u2013d\u2022\u2018e\u2019\u201Cf\u201D"),
         "special characters"},
        {"{\\rtf1 ligne\r\nsuite\\\nfin}", "lignesuite\nfin",
         "the file's line breaks are not text; a backslash before one ends the paragraph"},
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
        {"{\\rtf1 \\u-4064? \\u-10179?\\u-8704? \\u-10179? seul}",
         QStringLiteral("\uF020 😀 \uFFFD seul"),
         "negative values are above 32767; a surrogate pair makes one character, half of one none"},
        {"{\\rtf1 {\\uc3\\u233 ab}cd}", QStringLiteral("écd"), "the fallback ends with its group"},
        {"{\\rtf1{\\stylesheet{\\s0 Normal;}}{\\info{\\title T}{\\author A}}"
         "{\\*\\generator Riched20;}{\\*\\inconnu {imbrique} texte}"
         "{\\header entete}{\\pict\\pngblip 89504e47}Vu"
         "{\\field{\\*\\fldinst HYPERLINK \"x\"}{\\fldrslt lien}}"
         "{\\*\\bkmkstart b}\\bin4 {}\\a fin}",
         "Vulien fin", "destinations that are not text are left out"},
        {"{\\rtf1 \\motinconnu12 texte\\x}", "texte", "unknown control words are ignored"},
        {"{\\rtf1 pas de fin {\\b gras\\", "pas de fin gras",
         "unclosed groups, a backslash at the end"},
        {"{\\rtf1 fin}}} apres", "fin", "nothing after the outer group, however many closings"},
        {"{\\rtf1 \\fs999999999999 \\li-99999999999 \\u99999999999 \\bin99999999 x}",
         QStringLiteral("\uFFFD"), "numbers out of range are bounded; \\bin stops at the end"},
        {"{\\rtf1\\ansi\\deff0{\\fonttbl{\\f0 Sans fin", "", "a font table without end"},
        {"{\\rtf1 a\x01\x02 b\tc}", "a b\tc", "control characters are not text"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.why);
        EXPECT_EQ(Read(QString::fromUtf8(c.rtf)), c.text);
    }
    EXPECT_EQ(Pieces("{\\rtf1 \\fs65000 \\li40000 x}"), QStringList("x|1638pt"));
    EXPECT_EQ(Paragraphs("{\\rtf1 \\fs65000 \\li40000 x}"), QStringList("x|1 2112 0 0 0 0"));
}

TEST(RtfReader, DeepNestingIsReadWithoutDeepRecursionOrMemory) {
    const int depth = 100000;
    const QString rtf =
        "{\\rtf1 debut" + QString(depth, u'{') + "profond" + QString(depth, u'}') + " fin}";
    EXPECT_EQ(Read(rtf), "debut fin") << "the text of groups nested too deep is left out";
    const QString shallow = "{\\rtf1 a" + QString(50, u'{') + "\\b b" + QString(50, u'}') + "c}";
    EXPECT_EQ(Pieces(shallow), QStringList({"a|", "b|b", "c|"}));
}

} // namespace
