#pragma once

#include <QString>
#include <QStringView>

class QTextDocument;

// The suppliers write their newsletters with a word processor and send them as rich text
// (RTF); older ones are plain text. This reader turns the rich text into a QTextDocument
// without any widget, so the newsletter pane and the tools share it.

// True when a newsletter text is rich text: it starts with "{\rtf".
bool IsRichText(QStringView text);

// Replaces the document's content with the rich text read from rtf. Shown: paragraphs (\par,
// \line, \tab and the special characters), alignment, indents and spacing, bold, italic,
// underline, strike-out, font families and sizes, text and highlight colours from the colour
// table, \'hh bytes in the document's code page (Windows-1252 unless \ansicpg or the font's
// character set says otherwise) and \uN characters with their fallback skipped. Not shown:
// the font and colour tables, the style sheet, the document information, pictures, objects,
// headers and footers, and every "\*" destination. Any input gives a document: whatever
// cannot be read is left out, and nothing after the closing brace of the outer group is read.
void ReadRtf(QStringView rtf, QTextDocument& document);

// Shows a newsletter text in a document: read as rich text when it is, else as plain text in
// the document's default format.
void SetNewsletterText(QTextDocument& document, const QString& text);
