#include "dbase/tablewriter.h"

#include "dbase/dberror.h"
#include "dbase/dbfformat.h"
#include "dbase/tablefile.h"
#include "dbase/textcodec.h"

#include <QFileInfo>

void writeNewTable(const QString& path, const NewTable& table) {
    for (const FieldDef& f : table.fields)
        Dbf::checkNewField(f);
    const TableHeader header = Dbf::makeHeader(table.fields, table.languageDriver);
    const auto codec = TextCodec::forDriver(table.languageDriver);
    QByteArray records;
    records.reserve(qsizetype(table.rows.size()) * header.recordLength);
    for (int r = 0; r < table.rows.size(); ++r) {
        const QVariantList& values = table.rows[r];
        if (values.size() != table.fields.size())
            throw DbError(DbErrors::Syntax, QStringLiteral("Row %1 has %2 values for %3 fields.")
                                                .arg(r + 1)
                                                .arg(values.size())
                                                .arg(table.fields.size()));
        QByteArray record = Dbf::blankRecord(header);
        if (r < table.deleted.size() && table.deleted[r])
            record[0] = Dbf::Deleted;
        for (int i = 0; i < values.size(); ++i)
            Dbf::encodeField(record.data() + header.offsets[i], table.fields[i], values[i], *codec);
        records.append(record);
    }
    TableFile::replace(path, QFileInfo(path).completeBaseName().toUpper(), header, records,
                       quint32(table.rows.size()));
}
