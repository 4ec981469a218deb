#include "partsfile/modntx.h"

#include "app/appstate.h"
#include "app/installpath.h"
#include "app/messages.h"
#include "app/prompts.h"
#include "partsfile/cp1252.h"
#include "partsfile/ntxlayout.h"

#include <QFile>
#include <QIODevice>
#include <QSet>
#include <QtEndian>
#include <algorithm>
#include <cerrno>
#include <cstring>

#ifdef Q_OS_UNIX
#include <unistd.h>
#endif

namespace modNTX {
namespace {

using namespace NtxLayout;

// Carries a failure from deep in the page scan up to the search's boundary, where it becomes
// an outcome; it never leaves this file.
struct ScanError {
    StockFailure failure;
};

qint16 readInt16(const char* at) {
    return qFromLittleEndian<qint16>(at);
}
quint16 readUInt16(const char* at) {
    return qFromLittleEndian<quint16>(at);
}
qint32 readInt32(const char* at) {
    return qFromLittleEndian<qint32>(at);
}
quint32 readUInt32(const char* at) {
    return qFromLittleEndian<quint32>(at);
}

// Positioned reads on one of the two files. The caller has checked that offset lies inside the
// file; bytes past its end read as zeros, as the original binary reads gave them.
class PositionedFile {
public:
    explicit PositionedFile(QIODevice& device) : device_(device), size_(device.size()) {
#ifdef Q_OS_UNIX
        // A search reads a few dozen scattered blocks: one system call each instead of two.
        if (const auto* file = qobject_cast<const QFile*>(&device))
            handle_ = file->handle();
#endif
    }

    qint64 size() const {
        return size_;
    }

    // Returns the number of bytes that were really in the file.
    qint64 readAt(qint64 offset, char* buffer, qint64 length) {
        const qint64 inFile = std::clamp<qint64>(size_ - offset, 0, length);
        qint64 got = 0;
        while (got < inFile) {
            const qint64 n = readSome(offset + got, buffer + got, inFile - got);
            if (n < 0)
                throw ScanError{StockFailure::ReadError};
            if (n == 0)
                break;
            got += n;
        }
        std::memset(buffer + got, 0, size_t(length - got));
        return got;
    }

private:
    qint64 readSome(qint64 offset, char* buffer, qint64 length) {
#ifdef Q_OS_UNIX
        if (handle_ >= 0) {
            qint64 n;
            do {
                n = ::pread(handle_, buffer, size_t(length), off_t(offset));
            } while (n < 0 && errno == EINTR);
            return n;
        }
#endif
        if (!device_.seek(offset))
            return -1;
        return device_.read(buffer, length);
    }

    QIODevice& device_;
    qint64 size_;
    int handle_ = -1;
};

// One index page as read: its 80 header bytes and 42 items, and how many of those bytes the
// file really held (a sound index's last page is shorter than what is read).
struct Page {
    char bytes[PageBytesRead];
    qint64 available = 0;

    int keyCount() const { return readInt16(bytes); }

    // The item that item offset i designates. Only designated items must lie in the file.
    const char* item(int i) const {
        if (2 + 2 * (i + 1) > available)
            throw ScanError{StockFailure::ItemPastEnd};
        const int offset = readUInt16(bytes + 2 + 2 * i);
        if (offset < FirstItemAt || (offset - FirstItemAt) / ItemSize >= ItemsRead)
            throw ScanError{StockFailure::ItemOutsidePage};
        const int start = FirstItemAt + (offset - FirstItemAt) / ItemSize * ItemSize;
        if (start + ItemSize > available)
            throw ScanError{StockFailure::ItemPastEnd};
        return bytes + start;
    }
};

// Only blanks are trimmed; other characters of the field stay.
QString trimmedOfBlanks(const QString& text) {
    qsizetype first = 0;
    qsizetype last = text.size();
    while (first < last && text[first] == u' ')
        ++first;
    while (last > first && text[last - 1] == u' ')
        --last;
    return text.mid(first, last - first);
}

quint32 childOf(const char* item) {
    return readUInt32(item + ItemChildAt);
}
qint32 recordOf(const char* item) {
    return readInt32(item + ItemRecordAt);
}

// The state of one search: the search key, the two open files and their headers.
class StockScan {
public:
    StockScan(QIODevice& index, QIODevice& table, const StockLineSink& sink)
        : index_(index), table_(table), sink_(sink) {}

    void run(const QString& text, qint32& maxLines) {
        char indexHeader[HeaderBytesRead];
        char tableHeader[StockLayout::HeaderBytesRead];
        if (index_.size() < HeaderBytesRead || table_.size() < StockLayout::HeaderBytesRead)
            throw ScanError{StockFailure::ShortHeader};
        index_.readAt(0, indexHeader, HeaderBytesRead);
        table_.readAt(0, tableHeader, StockLayout::HeaderBytesRead);
        headerLength_ = readInt16(tableHeader + StockLayout::HeaderLengthAt);
        recordLength_ = readInt16(tableHeader + StockLayout::RecordLengthAt);
        key_ = text.toUpper();
        sink_(StockHeading());
        ScanPage(readUInt32(indexHeader + RootOffsetAt), maxLines, 0);
    }

    const StockSearchCounters& counters() const { return counters_; }

private:
    void readPage(quint32 pageOffset, int depth, Page& page) {
        if (depth >= MaxPageDepth)
            throw ScanError{StockFailure::TooDeep};
        if (pageOffset >= index_.size())
            throw ScanError{StockFailure::PageOutsideFile};
        // A sound tree reaches each page once; a page met again means a loop in the tree.
        if (visited_.contains(pageOffset))
            throw ScanError{StockFailure::PageRevisited};
        visited_.insert(pageOffset);
        page.available = index_.readAt(pageOffset, page.bytes, PageBytesRead);
        ++counters_.pagesRead;
        if (page.available < 2)
            throw ScanError{StockFailure::PageOutsideFile};
        if (page.keyCount() < 0 || page.keyCount() > MaxKeys)
            throw ScanError{StockFailure::BadKeyCount};
    }

    // The first characters of the item's key (as many as the search key has, at most 15),
    // compared ordinally with the search key.
    int comparePrefix(const char* item) const {
        char16_t prefix[KeySize];
        DecodeCp1252(item + ItemKeyAt, KeySize, prefix);
        const qsizetype n = std::min<qsizetype>(key_.size(), KeySize);
        return QStringView(prefix, n).compare(QStringView(key_), Qt::CaseSensitive);
    }

    // The page scan: visits only the subtrees where a match can lie and gives the matches in
    // ascending key order, a key of an inner page after the matches of its child.
    void ScanPage(quint32 pageOffset, qint32& remaining, int depth) {
        Page page;
        readPage(pageOffset, depth, page);
        if (remaining <= 0)
            return;
        const int keyCount = page.keyCount();
        for (int i = 0; i < keyCount; ++i) {
            if (remaining <= 0)
                return;
            const char* item = page.item(i);
            const int order = comparePrefix(item);
            const quint32 child = childOf(item);
            if (order > 0 && child != 0) {
                ScanPage(child, remaining, depth + 1);
                return;
            }
            if (order != 0)
                continue;
            if (child != 0) {
                ScanPage(child, remaining, depth + 1);
                if (remaining <= 0)
                    return;
            }
            emitRecord(recordOf(item));
            --remaining;
            if (remaining <= 0)
                return;
        }
        const quint32 lastChild = childOf(page.item(keyCount));
        if (lastChild != 0)
            ScanPage(lastChild, remaining, depth + 1);
    }

    void emitRecord(qint32 record) {
        using namespace StockLayout;
        const qint64 at = qint64(headerLength_) + (qint64(record) - 1) * recordLength_ + 1;
        if (record < 1 || at < 1 || at + BytesRead > table_.size())
            throw ScanError{StockFailure::RecordOutsideTable};
        char bytes[BytesRead];
        table_.readAt(at, bytes, BytesRead);
        ++counters_.recordsRead;
        sink_(partLine(bytes));
    }

    // Number, description, four prices, cost, a blank and the family, as they stand.
    static QString partLine(const char* afterFlag) {
        using namespace StockLayout;
        const auto field = [afterFlag](int at, int width) {
            return DecodeCp1252(afterFlag + at - 1, width);
        };
        return field(NumberAt, NumberWidth) + field(DescriptionAt, DescriptionWidth) +
               field(PricesAt, 4 * PriceWidth) + field(CostAt, CostWidth) + u' ' +
               trimmedOfBlanks(field(FamilyAt, FamilyWidth));
    }

    PositionedFile index_;
    PositionedFile table_;
    const StockLineSink& sink_;
    QString key_;
    qint16 headerLength_ = 0;
    qint16 recordLength_ = 0;
    QSet<quint32> visited_;
    StockSearchCounters counters_;
};

} // namespace

QString FailureText(StockFailure failure) {
    switch (failure) {
    case StockFailure::None:
        return QStringLiteral("no failure");
    case StockFailure::OpenIndex:
        return QStringLiteral("the index cannot be opened");
    case StockFailure::OpenTable:
        return QStringLiteral("the parts table cannot be opened");
    case StockFailure::ShortHeader:
        return QStringLiteral("a file is shorter than its header");
    case StockFailure::ReadError:
        return QStringLiteral("a read failed");
    case StockFailure::PageOutsideFile:
        return QStringLiteral("an index page lies outside the index");
    case StockFailure::PageRevisited:
        return QStringLiteral("an index page refers back to a page already read");
    case StockFailure::TooDeep:
        return QStringLiteral("the index has too many levels");
    case StockFailure::BadKeyCount:
        return QStringLiteral("an index page has an impossible key count");
    case StockFailure::ItemOutsidePage:
        return QStringLiteral("an item offset designates an item outside its page");
    case StockFailure::ItemPastEnd:
        return QStringLiteral("an item lies past the end of the index");
    case StockFailure::RecordOutsideTable:
        return QStringLiteral("the index names a record the table does not hold");
    }
    return {};
}

QString StockHeading() {
    const auto piece = [](const QString& text, int width) {
        return text.leftJustified(width, u' ', true);
    };
    const QString price = LoadText(56);
    return piece(LoadText(55), 15) + piece(QStringLiteral("DESCRIPTION"), 33) +
           piece(price + QStringLiteral("-1"), 9) + piece(price + QStringLiteral("-2"), 9) +
           piece(price + QStringLiteral("-3"), 9) + piece(price + QStringLiteral("-4"), 9) +
           piece(LoadText(57), 7) + QStringLiteral(" FAM ");
}

StockSearchOutcome ScanStock(QIODevice& index, QIODevice& table, const QString& text,
                             qint32& maxLines, const StockLineSink& sink) {
    StockSearchOutcome outcome;
    StockScan scan(index, table, sink);
    try {
        scan.run(text, maxLines);
    } catch (const ScanError& error) {
        outcome.failure = error.failure;
    }
    outcome.counters = scan.counters();
    return outcome;
}

namespace {

// Opens name in dir for reading; the exact name first, then the same name in another case, as
// installations copied from Windows keep them.
bool openInstallFile(QFile& file, const QString& dir, const QString& name) {
    constexpr auto mode = QIODevice::ReadOnly | QIODevice::Unbuffered;
    const bool separated = dir.isEmpty() || dir.endsWith(u'/') || dir.endsWith(u'\\');
    file.setFileName(separated ? QString(dir + name) : QString(dir + u'/' + name));
    if (file.open(mode))
        return true;
    const QString resolved = ResolveInstallPath(dir, name);
    if (resolved == file.fileName())
        return false;
    file.setFileName(resolved);
    return file.open(mode);
}

} // namespace

StockSearchOutcome SearchStockIn(const QString& prgDir, const QString& text, qint32& maxLines,
                                 const StockLineSink& sink) {
    QFile index;
    if (!openInstallFile(index, prgDir, QStringLiteral("STOCK.NTX")))
        return {StockFailure::OpenIndex, {}};
    QFile table;
    if (!openInstallFile(table, prgDir, QStringLiteral("STOCK.DBF")))
        return {StockFailure::OpenTable, {}};
    StockSearchOutcome outcome = ScanStock(index, table, text, maxLines, sink);
    table.close();
    index.close();
    return outcome;
}

void SearchStock(const QString& text, qint32& maxLines, const StockLineSink& sink) {
    if (!SearchStockIn(App().PrgPath, text, maxLines, sink).ok())
        MsgBox(LoadText(79));
}

} // namespace modNTX
