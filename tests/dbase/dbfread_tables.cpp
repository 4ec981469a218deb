// Writes, through the engine, every kind of table the program writes (rows written by update
// and by addNew, ALTER TABLE, SELECT ... INTO, CREATE TABLE, INSERT INTO ... SELECT, two code
// pages, deleted records) into a directory, and prints what the engine reads in each as JSON
// for dbfread_check.py to compare with an independent reader.
#include "dbase/dberror.h"
#include "dbase/dbfformat.h"
#include "dbase/recordset.h"
#include "dbase/tablefile.h"
#include "dbase/tablewriter.h"
#include "dbase/textcodec.h"

#include <QCoreApplication>
#include <QDate>
#include <QDir>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <iostream>

namespace {

NewTable kindsTable(quint8 driver) {
    return {{FieldDef::text("NAME", 12), FieldDef::number("PRICE", 9, 2),
             FieldDef::number("QTY", 5), FieldDef::date("SINCE"), FieldDef::logical("ACTIVE")},
            {{QString::fromUtf8("Crème brûlée"), 12.5, 3, QDate(2024, 2, 29), true},
             {"Deleted row", 1.0, 1, QDate(1999, 12, 31), false},
             {QVariant(), QVariant(), QVariant(), QVariant(), QVariant()},
             {"  lead", -0.25, -12, QDate(2030, 1, 1), false}},
            {false, true, false, false},
            driver};
}

QJsonObject describe(const QDir& dir, const QString& name) {
    const QString path = dir.filePath(name + ".DBF");
    const TableSnapshot t = TableFile::load(path, name);
    QJsonArray fields;
    for (const FieldDef& f : t.header.fields)
        fields.append(f.name);
    QJsonArray records;
    for (quint32 recno = 1; recno <= t.header.recordCount; ++recno) {
        QJsonArray values;
        for (int i = 0; i < t.header.fields.size(); ++i)
            values.append(QJsonValue::fromVariant(Dbf::decodeField(
                t.record(recno) + t.header.offsets[i], t.header.fields[i], *t.codec)));
        records.append(QJsonObject{{"deleted", t.isDeleted(recno)}, {"values", values}});
    }
    return QJsonObject{{"file", path},
                       {"encoding", QString::fromLatin1(t.codec->name())},
                       {"count", qint64(t.header.recordCount)},
                       {"fields", fields},
                       {"records", records}};
}

void writeTables(const QString& dir) {
    const QDir d(dir);
    writeNewTable(d.filePath("KINDS.DBF"), kindsTable(0x57));
    writeNewTable(d.filePath("OEM.DBF"), kindsTable(0x02));
    Connection c;
    c.open(dir);
    c.execute("SELECT * INTO UPDATED FROM KINDS");
    c.execute("ALTER TABLE UPDATED ADD COLUMN CATNO TEXT(254)");
    {
        Recordset rs;
        rs.open("UPDATED", c, CursorType::Keyset, LockType::Optimistic);
        rs.setValue("NAME", QString::fromUtf8("Déjà vu"));
        rs.setValue("PRICE", "99.99");
        rs.setValue("CATNO", "ABC;XYZ;");
        rs.update();
        rs.moveNext();
        rs.setValue("ACTIVE", true);
        rs.setValue("SINCE", QVariant());
        rs.addNew();
        rs.setValue("NAME", "Added");
        rs.setValue("QTY", 7);
        rs.update();
    }
    c.execute("SELECT NAME, ACTIVE INTO SUBSET FROM KINDS WHERE ACTIVE = False OR NAME IS NULL");
    // A created table filled from another with a narrower field of the same name.
    c.execute("CREATE TABLE MEREMPLA (ORI TEXT(15), NAME TEXT(15))");
    c.execute("INSERT INTO MEREMPLA SELECT * FROM KINDS");
    c.execute("SELECT * INTO INSERTED FROM KINDS WHERE 1 = 0");
    c.execute("ALTER TABLE INSERTED ADD COLUMN EXTRA TEXT(5)");
    c.execute("INSERT INTO INSERTED SELECT * FROM OEM");
}

} // namespace

int main(int argc, char** argv) {
    QCoreApplication app(argc, argv);
    const QDir dir(app.arguments().value(1));
    try {
        writeTables(dir.path());
        QJsonArray tables;
        for (const QString& file : dir.entryList({"*.DBF"}))
            tables.append(describe(dir, file.chopped(4)));
        std::cout << QJsonDocument(tables).toJson().toStdString();
    } catch (const DbError& e) {
        std::cerr << "error " << e.number() << ": " << e.description().toStdString() << std::endl;
        return 1;
    }
    return 0;
}
