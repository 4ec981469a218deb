// Feeds arbitrary text to the newsletter reader, read as Windows-1252 bytes would come from the
// newsletter table and again as UTF-8 (so that every character reaches it). Any input must give
// a document without a crash or a hang, and the document never holds more characters than the
// text had: the reader keeps nothing that grows beyond its input.
#include "comms/rtfreader.h"

#include <QByteArray>
#include <QString>
#include <QTextDocument>
#include <cstdint>
#include <cstdlib>

namespace {

void readOne(const QString& text) {
    QTextDocument document;
    SetNewsletterText(document, text);
    ReadRtf(text, document);
    if (document.characterCount() > text.size() + 1)
        std::abort();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const QByteArray bytes(reinterpret_cast<const char*>(data), qsizetype(size));
    readOne(QString::fromLatin1(bytes));
    readOne(QString::fromUtf8(bytes));
    return 0;
}
