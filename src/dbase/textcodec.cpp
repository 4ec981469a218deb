#include "dbase/textcodec.h"

#include <QMutex>
#include <map>

namespace {

const char* codePageName(quint8 driver) {
    switch (driver) {
    case 0x02:
    case 0x37:
        return "IBM850";
    case 0x01:
    case 0x1B:
        return "IBM437";
    default:
        return "windows-1252";
    }
}

bool isAscii(const char* data, qsizetype size) {
    for (qsizetype i = 0; i < size; ++i)
        if (static_cast<unsigned char>(data[i]) >= 0x80)
            return false;
    return true;
}

} // namespace

TextCodec::TextCodec(quint8 languageDriver)
    : languageDriver_(languageDriver), name_(codePageName(languageDriver)), decoder_(name_),
      encoder_(name_) {}

QString TextCodec::decode(const char* data, qsizetype size) const {
    // Most of the dealer's text is plain ASCII, the same in every code page.
    if (isAscii(data, size))
        return QString::fromLatin1(data, size);
    return decoder_.decode(QByteArrayView(data, size));
}

QByteArray TextCodec::encode(const QString& text) const {
    bool ascii = true;
    for (QChar c : text)
        ascii = ascii && c.unicode() < 0x80;
    if (ascii)
        return text.toLatin1();
    QByteArray bytes = encoder_.encode(text);
    // The converters put the substitute control character for what the code page lacks;
    // a question mark is what the other programs would show.
    bytes.replace('\x1A', '?');
    return bytes;
}

std::shared_ptr<const TextCodec> TextCodec::forDriver(quint8 languageDriver) {
    static QMutex mutex;
    static std::map<quint8, std::shared_ptr<const TextCodec>> codecs;
    QMutexLocker locker(&mutex);
    auto& codec = codecs[languageDriver];
    if (!codec)
        codec = std::make_shared<const TextCodec>(languageDriver);
    return codec;
}
