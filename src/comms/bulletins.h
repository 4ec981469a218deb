#pragma once

#include <QList>
#include <QString>
#include <QStringList>
#include <QVariant>

// The newsletters' index NVINDEX in the newsletters directory, read whole in the order of
// advertiser and subject. Its columns are counted from 0 in the table's field order; three of
// them are used.
constexpr int AdvertiserColumn = 1; // ANNONCEUR
constexpr int SubjectColumn = 4;    // SUJET
constexpr int TextColumn = 10;      // the newsletter's text

constexpr auto BulletinQuery = "SELECT * FROM NVINDEX ORDER BY ANNONCEUR+SUJET";

// Every record of NVINDEX, indexed (column, row) as the newsletter pane reads it.
class BulletinTable {
public:
    BulletinTable() = default;
    explicit BulletinTable(QList<QVariantList> rows) : rows_(std::move(rows)) {}

    int rowCount() const { return int(rows_.size()); }
    // The value of a column of a row; Null for a column or row the table does not have.
    QVariant value(int column, int row) const;

private:
    QList<QVariantList> rows_;
};

// The connection string of the newsletters directory (ending with its separator).
QString BulletinConnectionString(const QString& infoPath);

// Opens a connection of its own on the newsletters directory, reads every record of NVINDEX
// and closes the connection. Throws DbError: NVINFO or NVINDEX missing or damaged, and 3021
// for an index without records (there is no last record to move to).
BulletinTable LoadBulletinRows(const QString& infoPath);

// The advertisers in the order of their first rows, each once; rows without an advertiser give
// none. (The sort joins advertiser and subject without blanks, so "GATES" + "Z" comes after
// "GATESA" + "B": one advertiser's rows are not always together.)
QStringList Advertisers(const BulletinTable& rows);

// The subjects of one advertiser, in row order (an empty text for a record without subject),
// with the rows they stand for.
struct AdvertiserSubjects {
    int firstRow = -1; // the advertiser's first row, -1 when it has none
    QStringList subjects;
    QList<int> rows;
};
AdvertiserSubjects SubjectsOf(const BulletinTable& rows, const QString& advertiser);

// The newsletter text of a row; empty when it has none.
QString BulletinText(const BulletinTable& rows, int row);
