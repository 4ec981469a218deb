#pragma once

#include <QByteArray>
#include <QString>
#include <QStringDecoder>
#include <QStringEncoder>
#include <memory>

// Text of one table, decoded and encoded with the code page its language-driver byte names:
// 0x03, 0x57, 0x58 Windows-1252; 0x02, 0x37 code page 850; 0x01, 0x1B code page 437; anything
// else (0 included) Windows-1252, as the other workstations' programs read it.
class TextCodec {
public:
    explicit TextCodec(quint8 languageDriver = 0x57);
    TextCodec(const TextCodec&) = delete;
    TextCodec& operator=(const TextCodec&) = delete;

    QString decode(const char* data, qsizetype size) const;
    QByteArray encode(const QString& text) const;
    quint8 languageDriver() const { return languageDriver_; }
    // The code page's name as the converters know it.
    const char* name() const { return name_; }

    // One shared codec per language-driver byte.
    static std::shared_ptr<const TextCodec> forDriver(quint8 languageDriver);

private:
    quint8 languageDriver_;
    const char* name_;
    mutable QStringDecoder decoder_;
    mutable QStringEncoder encoder_;
};
