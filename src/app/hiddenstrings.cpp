#include "app/hiddenstrings.h"

#include "app/hiddenscheme.h"

#include <QFile>
#include <stdexcept>

namespace {

const std::uint8_t* bytes(const QByteArray& array) {
    return reinterpret_cast<const std::uint8_t*>(array.constData());
}

QByteArray readResource(const QString& path) {
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        throw std::runtime_error("hidden string table missing: " + path.toStdString());
    return file.readAll();
}

} // namespace

HiddenTable::HiddenTable(QByteArray data, QByteArray index)
    : data_(std::move(data)), index_(std::move(index)) {
    if (std::size_t(index_.size()) < HiddenScheme::IndexSize)
        throw std::runtime_error("hidden string index too short");
    std::size_t previous = 0;
    for (std::size_t n = 0; n < HiddenScheme::IndexSize / 2; ++n) {
        const std::size_t offset = HiddenScheme::offsetAt(bytes(index_), 2 * n);
        if (offset < previous || offset > std::size_t(data_.size()))
            throw std::runtime_error("hidden string index does not fit its data");
        previous = offset;
    }
    // The last offset closes the key, which starts at the key offset.
    if (HiddenScheme::offsetAt(bytes(index_), HiddenScheme::KeyOffsetByte) == previous)
        throw std::runtime_error("hidden string table has no key");
}

const HiddenTable& HiddenTable::program() {
    static const HiddenTable table(readResource(QStringLiteral(":/custom/101")),
                                   readResource(QStringLiteral(":/custom/102")));
    return table;
}

int HiddenTable::entryCount() {
    return HiddenScheme::EntryCount;
}

QString HiddenTable::entry(int n) const {
    if (n < 0 || n >= HiddenScheme::EntryCount)
        throw std::out_of_range("no hidden string " + std::to_string(n));
    const std::uint8_t* index = bytes(index_);
    const std::size_t start = HiddenScheme::offsetAt(index, 2 * std::size_t(n));
    const std::size_t end = HiddenScheme::offsetAt(index, 2 * std::size_t(n) + 2);
    const std::size_t keyStart = HiddenScheme::offsetAt(index, HiddenScheme::KeyOffsetByte);
    const std::size_t keyEnd = HiddenScheme::offsetAt(index, HiddenScheme::KeyOffsetByte + 2);
    const HiddenScheme::Bytes key(bytes(data_) + keyStart, bytes(data_) + keyEnd);
    const HiddenScheme::Bytes plain =
        HiddenScheme::unscramble(bytes(data_) + start, end - start, n, key);
    return QString::fromLatin1(reinterpret_cast<const char*>(plain.data()),
                               qsizetype(plain.size()));
}

QString HiddenString(int n) {
    return HiddenTable::program().entry(n);
}
