#include "dbase/query.h"

#include "dbase/dberror.h"
#include "dbase/textcodec.h"

#include <algorithm>
#include <cstring>

namespace {

QList<int> selectedColumns(const SelectStatement& s, const TableSnapshot& t) {
    QList<int> columns;
    if (s.allColumns) {
        for (int i = 0; i < t.header.fields.size(); ++i)
            columns.append(i);
        return columns;
    }
    for (const QString& name : s.columns) {
        const int i = t.header.fieldIndex(name);
        if (i < 0)
            throw DbError(DbErrors::NoSuchField,
                          QStringLiteral("The table %1 has no field '%2'.").arg(t.name, name));
        columns.append(i);
    }
    return columns;
}

struct TextKey {
    const char* data;
    int size; // 0 for Null (blank)
};

TextKey textKey(const char* record, const TableHeader& h, int field) {
    const char* data = record + h.offsets[field];
    int n = h.fields[field].length;
    // Descriptions are mostly trailing blanks: skip them eight at a time first.
    constexpr quint64 EightBlanks = 0x2020202020202020ULL;
    quint64 word;
    while (n >= 8 && (std::memcpy(&word, data + n - 8, 8), word == EightBlanks))
        n -= 8;
    while (n > 0 && (data[n - 1] == ' ' || data[n - 1] == '\0'))
        --n;
    return {data, n};
}

int compareTextKeys(const TextKey& a, const TextKey& b) {
    const int c = std::memcmp(a.data, b.data, size_t(std::min(a.size, b.size)));
    if (c != 0)
        return c;
    return a.size - b.size; // Null (empty) first, then by bytes
}

// Eight key bytes from `skip` on as one big-endian number (zeros past the end), so that most
// comparisons of the sort need no memcmp.
quint64 keyPrefix(const TextKey& k, int skip) {
    quint64 prefix = 0;
    for (int i = 0; i < 8; ++i) {
        const int at = skip + i;
        prefix = (prefix << 8) | (at < k.size ? quint8(k.data[at]) : 0);
    }
    return prefix;
}

// Bytes that every key shares at its start: the prefixes start after them.
int commonStart(const std::vector<TextKey>& keys) {
    if (keys.empty())
        return 0;
    int common = keys[0].size;
    for (const TextKey& k : keys) {
        int i = 0;
        while (i < common && i < k.size && k.data[i] == keys[0].data[i])
            ++i;
        common = i;
    }
    return common;
}

struct SortEntry {
    quint64 prefix;
    TextKey key;
    quint32 recno;
};

// The common order on one text field ([DESC]) compares the stored bytes in place.
bool sortByOneTextField(std::vector<quint32>& recnos, const std::vector<OrderKey>& keys,
                        const TableSnapshot& t) {
    if (keys.size() != 1 || keys[0].expr->kind != Expr::Kind::Column ||
        t.header.fields[keys[0].expr->field].type != 'C')
        return false;
    const int field = keys[0].expr->field;
    const bool descending = keys[0].descending;
    std::vector<TextKey> textKeys;
    textKeys.reserve(recnos.size());
    for (quint32 recno : recnos)
        textKeys.push_back(textKey(t.record(recno), t.header, field));
    const int skip = commonStart(textKeys);
    std::vector<SortEntry> rows;
    rows.reserve(recnos.size());
    for (size_t i = 0; i < recnos.size(); ++i)
        rows.push_back({keyPrefix(textKeys[i], skip), textKeys[i], recnos[i]});
    std::stable_sort(rows.begin(), rows.end(),
                     [descending](const SortEntry& a, const SortEntry& b) {
                         int c = a.prefix == b.prefix ? 0 : (a.prefix < b.prefix ? -1 : 1);
                         if (c == 0)
                             c = compareTextKeys(a.key, b.key);
                         return descending ? c > 0 : c < 0;
                     });
    for (size_t i = 0; i < rows.size(); ++i)
        recnos[i] = rows[i].recno;
    return true;
}

void sortRows(std::vector<quint32>& recnos, const std::vector<OrderKey>& keys,
              const TableSnapshot& t) {
    if (sortByOneTextField(recnos, keys, t))
        return;
    // Keys are worked out once per row; equal keys keep the file order (stable sort).
    const size_t n = recnos.size();
    std::vector<std::vector<SqlValue>> values(keys.size());
    for (size_t k = 0; k < keys.size(); ++k) {
        values[k].reserve(n);
        for (quint32 recno : recnos)
            values[k].push_back(evaluate(*keys[k].expr, t.record(recno), t.header));
    }
    std::vector<quint32> order(n);
    for (size_t i = 0; i < n; ++i)
        order[i] = quint32(i);
    std::stable_sort(order.begin(), order.end(), [&](quint32 a, quint32 b) {
        for (size_t k = 0; k < keys.size(); ++k) {
            const int c = compareForSort(values[k][a], values[k][b]);
            if (c != 0)
                return keys[k].descending ? c > 0 : c < 0;
        }
        return false;
    });
    std::vector<quint32> sorted(n);
    for (size_t i = 0; i < n; ++i)
        sorted[i] = recnos[order[i]];
    recnos.swap(sorted);
}

} // namespace

std::vector<quint32> matchingRecords(const TableSnapshot& t, const Expr* where) {
    std::vector<quint32> recnos;
    recnos.reserve(t.header.recordCount);
    for (quint32 recno = 1; recno <= t.header.recordCount; ++recno) {
        if (t.isDeleted(recno))
            continue;
        if (!where || isTrue(*where, t.record(recno), t.header))
            recnos.push_back(recno);
    }
    return recnos;
}

QueryResult runSelect(SelectStatement& s, const ConnectionState& connection) {
    connection.checkOpen();
    QueryResult r;
    const QString path = connection.tablePath(s.from);
    r.table = std::make_shared<TableSnapshot>(TableFile::load(path, displayName(s.from)));
    const TableSnapshot& t = *r.table;
    r.columns = selectedColumns(s, t);
    if (s.where)
        bindExpr(*s.where, t.header, *t.codec);
    for (OrderKey& k : s.orderBy)
        bindExpr(*k.expr, t.header, *t.codec);
    r.recnos = matchingRecords(t, s.where.get());
    if (!s.orderBy.empty())
        sortRows(r.recnos, s.orderBy, t);
    if (s.top >= 0 && r.recnos.size() > size_t(s.top))
        r.recnos.resize(size_t(s.top));
    return r;
}
