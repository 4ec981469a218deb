#pragma once

#include <QByteArray>
#include <QString>
#include <QStringView>

// The parts file's text is in the Windows ANSI code page (Windows-1252). The search decodes a
// few hundred short fields per search, so it uses this table instead of a general converter.

// The character of one Windows-1252 byte (the five bytes without a character map to the control
// character of the same number, as Windows does).
char16_t Cp1252Char(unsigned char byte);

// Decodes size bytes into out (which holds at least size characters).
void DecodeCp1252(const char* data, qsizetype size, char16_t* out);
QString DecodeCp1252(const char* data, qsizetype size);

// Encodes text; characters the code page lacks become "?".
QByteArray EncodeCp1252(QStringView text);
