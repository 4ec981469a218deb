// Feeds arbitrary text to the statement parser, then runs what parses as a condition over a
// small table: parsing and evaluation must end in a result or a DbError, never a crash.
#include "dbase/dberror.h"
#include "dbase/dbfformat.h"
#include "dbase/expression.h"
#include "dbase/sqlparser.h"
#include "dbase/tablefile.h"
#include "dbase/textcodec.h"

#include <QBuffer>
#include <QDate>
#include <cstddef>
#include <cstdint>

namespace {

TableSnapshot sampleTable() {
    const QList<FieldDef> fields = {{"UTILISER", 'L', 1, 0}, {"DESC", 'C', 10, 0},
                                    {"CODEGRO", 'C', 4, 0},  {"PCT1", 'N', 6, 2},
                                    {"DATEEFF", 'D', 8, 0},  {"CATNO", 'C', 20, 0}};
    const TableHeader h = Dbf::makeHeader(fields, 0x57);
    const auto codec = TextCodec::forDriver(0x57);
    QByteArray records;
    const QList<QVariantList> rows = {
        {true, "Alpha", "AB", 12.5, QDate(2024, 1, 2), "X;"},
        {false, QVariant(), "CD", QVariant(), QVariant(), ""},
        {QVariant(), "Zeta", QVariant(), -3, QDate(1999, 9, 9), "ABC;XYZ;"}};
    for (const QVariantList& row : rows) {
        QByteArray rec = Dbf::blankRecord(h);
        for (int i = 0; i < row.size(); ++i)
            Dbf::encodeField(rec.data() + h.offsets[i], fields[i], row[i], *codec);
        records += rec;
    }
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    TableFile::writeTo(buffer, h, records, quint32(rows.size()), QStringLiteral("SAMPLE"));
    return TableFile::fromBytes(buffer.data(), QStringLiteral("SAMPLE"));
}

void evaluateOver(Expr& e, const TableSnapshot& t) {
    bindExpr(e, t.header, *t.codec);
    for (quint32 recno = 1; recno <= t.header.recordCount; ++recno)
        (void)evaluate(e, t.record(recno), t.header);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    static const TableSnapshot table = sampleTable();
    const QString text = QString::fromUtf8(reinterpret_cast<const char*>(data), qsizetype(size));
    try {
        Statement statement = Sql::parseStatement(text);
        if (auto* s = std::get_if<SelectStatement>(&statement)) {
            if (s->where)
                evaluateOver(*s->where, table);
            for (OrderKey& k : s->orderBy)
                evaluateOver(*k.expr, table);
        }
    } catch (const DbError&) {
    }
    try {
        ExprPtr condition = Sql::parseCondition(text);
        evaluateOver(*condition, table);
    } catch (const DbError&) {
    }
    return 0;
}
