#include "partsfile/cp1252.h"

namespace {

// Bytes 0x80 to 0x9F; every other byte is the Latin-1 character of the same number.
constexpr char16_t HighControls[32] = {
    0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0x008D, 0x017D, 0x008F, 0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178,
};

char encodeChar(char16_t c) {
    if (c < 0x80 || (c >= 0xA0 && c <= 0xFF))
        return char(c);
    for (int i = 0; i < 32; ++i) {
        if (HighControls[i] == c)
            return char(0x80 + i);
    }
    return '?';
}

} // namespace

char16_t Cp1252Char(unsigned char byte) {
    return byte >= 0x80 && byte < 0xA0 ? HighControls[byte - 0x80] : char16_t(byte);
}

void DecodeCp1252(const char* data, qsizetype size, char16_t* out) {
    for (qsizetype i = 0; i < size; ++i)
        out[i] = Cp1252Char(static_cast<unsigned char>(data[i]));
}

QString DecodeCp1252(const char* data, qsizetype size) {
    QString text(size, Qt::Uninitialized);
    DecodeCp1252(data, size, reinterpret_cast<char16_t*>(text.data()));
    return text;
}

QByteArray EncodeCp1252(QStringView text) {
    QByteArray bytes;
    bytes.reserve(text.size());
    for (const QChar c : text)
        bytes.append(encodeChar(c.unicode()));
    return bytes;
}
