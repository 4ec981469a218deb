#pragma once

#include <QChar>
#include <QStringView>

// The vocabulary of the newsletters' rich-text reader: the control words it acts on and the code
// pages it reads bytes in.

enum class RtfWord {
    None,
    Par,
    Bold,
    Italic,
    Underline,
    UnderlineNone,
    Strike,
    FontSize,
    Color,
    Highlight,
    Font,
    Plain,
    Pard,
    AlignLeft,
    AlignRight,
    AlignCenter,
    AlignJustify,
    LeftIndent,
    RightIndent,
    FirstIndent,
    SpaceBefore,
    SpaceAfter,
    UnicodeFallback,
    Unicode,
    AnsiCodePage,
    Ansi,
    Mac,
    Pc,
    Pca,
    DefaultFont,
    Charset,
    Red,
    Green,
    Blue,
    FontTable,
    ColorTable,
    Skipped
};

// The meaning of a control word that is not a character; None for a word the reader ignores.
// "Skipped" are the destinations whose text is not part of a newsletter (style sheet, document
// information, pictures, headers...).
RtfWord LookUpRtfWord(QStringView word);

// The character a control word stands for (\line, \tab, \emdash...), or a null character.
QChar WordCharacter(QStringView word);
// The character a control symbol stands for (\\, \{, \}, \~...), or a null character.
QChar SymbolCharacter(QChar symbol);

// The converter name of a code page the suppliers' word processors write; nullptr for any
// other code page.
const char* CodePageName(int codePage);

// The code page of a font character set (\fcharset); 0 for the document's own.
int CharsetCodePage(int charset);
