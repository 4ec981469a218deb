#include "comms/bulletins.h"

#include "dbase/connection.h"
#include "dbase/recordset.h"

#include <QSet>

namespace {

QVariantList CurrentRow(const Recordset& rs) {
    QVariantList row;
    row.reserve(rs.fieldCount());
    for (int column = 0; column < rs.fieldCount(); ++column)
        row << rs.value(column);
    return row;
}

} // namespace

QVariant BulletinTable::value(int column, int row) const {
    if (row < 0 || row >= rows_.size() || column < 0 || column >= rows_.at(row).size())
        return {};
    return rows_.at(row).at(column);
}

QString BulletinConnectionString(const QString& infoPath) {
    return QStringLiteral("Provider=Microsoft.Jet.OLEDB.4.0;Data Source=") + infoPath +
           QStringLiteral(";Mode=ReadWrite|Share Deny None;Extended Properties=dBase IV;"
                          "Persist Security Info=False;");
}

BulletinTable LoadBulletinRows(const QString& infoPath) {
    Connection connection;
    connection.setCursorLocation(CursorLocation::Client);
    connection.open(BulletinConnectionString(infoPath));
    Recordset rs;
    rs.open(QString::fromLatin1(BulletinQuery), connection);
    rs.moveLast();
    rs.moveFirst();
    const int count = rs.recordCount();
    QList<QVariantList> rows;
    rows.reserve(count);
    // The copy starts with the first record: an index without one fails here with 3021.
    do {
        rows << CurrentRow(rs);
        rs.moveNext();
    } while (rows.size() < count);
    rs.close();
    connection.close();
    return BulletinTable(std::move(rows));
}

QStringList Advertisers(const BulletinTable& rows) {
    QStringList advertisers;
    QSet<QString> listed;
    for (int row = 0; row < rows.rowCount(); ++row) {
        const QVariant advertiser = rows.value(AdvertiserColumn, row);
        if (advertiser.isNull() || listed.contains(advertiser.toString()))
            continue;
        listed.insert(advertiser.toString());
        advertisers << advertiser.toString();
    }
    return advertisers;
}

AdvertiserSubjects SubjectsOf(const BulletinTable& rows, const QString& advertiser) {
    AdvertiserSubjects found;
    for (int row = 0; row < rows.rowCount(); ++row) {
        const QVariant value = rows.value(AdvertiserColumn, row);
        if (value.isNull() || value.toString() != advertiser)
            continue;
        if (found.firstRow == -1)
            found.firstRow = row;
        found.subjects << rows.value(SubjectColumn, row).toString();
        found.rows << row;
    }
    return found;
}

QString BulletinText(const BulletinTable& rows, int row) {
    return rows.value(TextColumn, row).toString();
}
