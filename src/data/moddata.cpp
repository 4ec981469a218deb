#include "data/moddata.h"

#include "app/appstate.h"
#include "app/installpath.h"
#include "app/messages.h"
#include "app/prompts.h"
#include "dbase/dberror.h"

Connection connData;
Connection connPrg;
Recordset rsPrixList;
Recordset rsPrixCodes;
Recordset rsCataList;
Recordset rsCataFiles;
Recordset rsDepart;

namespace {

void openShared(Recordset& rs, const char* source, Connection& connection) {
    rs.open(QString::fromLatin1(source), connection, CursorType::Keyset, LockType::Optimistic);
}

// The two sorted views are set up by their properties before opening, client-side.
void openSorted(Recordset& rs, const char* source, Connection& connection) {
    rs.setCursorLocation(CursorLocation::Client);
    rs.setCursorType(CursorType::Keyset);
    rs.setLockType(LockType::Optimistic);
    rs.open(QString::fromLatin1(source), connection);
}

// The directory as the disk names it: an installation copied from Windows may hold "nvnv".
void openConnection(Connection& connection, const QString& directory) {
    connection.setCursorLocation(CursorLocation::Client);
    connection.open(ConnectionString(ResolveInstallPath(directory)));
}

void openConnections() {
    openConnection(connData, App().DataPath);
    openConnection(connPrg, App().PrgPath);
}

void openSharedRecordsets() {
    openSorted(rsPrixList, "SELECT * FROM PRIXLIST ORDER BY [DESC]", connData);
    openShared(rsPrixCodes, "SELECT FICHIER, CODEGRO FROM PRIXLIST", connData);
    openSorted(rsCataList, "SELECT * FROM CATALIST ORDER BY [DESC]", connData);
    openShared(rsCataFiles, "SELECT FICHIER FROM CATALIST", connData);
    openShared(rsDepart, "SELECT TOP 13 * FROM DEPART", connPrg);
}

void showOpenDataError(const DbError& error) {
    MsgBox(QStringLiteral("errOpenData: ") + error.description());
}

} // namespace

QString ConnectionString(const QString& directory) {
    return QStringLiteral("Provider=Microsoft.Jet.OLEDB.4.0;Data Source=") + directory +
           QStringLiteral(";Extended Properties=dBase IV;Persist Security Info=False;");
}

bool OpenData() {
    try {
        CloseData(); // whatever an earlier opening left open
        openConnections();
    } catch (const DbError& e) {
        // A directory that is missing is no lock: its description names it.
        showOpenDataError(e);
        return false;
    }
    try {
        openSharedRecordsets();
        return true;
    } catch (const DbError& e) {
        if (e.number() == DbErrors::Fail)
            MsgBox(LoadText(79));
        else
            showOpenDataError(e);
        return false;
    }
}

QString MPDetectInstal() {
    if (App().UpdateMode)
        return QStringLiteral("1");
    QString program;
    Recordset rs;
    try {
        rs.open(QStringLiteral("PARAPROG.DBF"), connData, CursorType::Keyset, LockType::ReadOnly);
        rs.moveFirst();
        rs.moveNext();
        program = rs.value(QStringLiteral("PROGRAM")).toString();
    } catch (const DbError& e) {
        MsgBox(QStringLiteral("errMPDetectInstal: ") + QString::number(e.number()) +
               QLatin1Char(' ') + e.description() + QLatin1Char(' ') + App().ContactLine);
    }
    if (rs.isOpen())
        rs.close();
    return program.toUpper().contains(QLatin1String("TALLYRATE")) ? QStringLiteral("2")
                                                                  : QStringLiteral("1");
}

void CloseData() {
    for (Recordset* rs : {&rsDepart, &rsPrixCodes, &rsPrixList, &rsCataFiles, &rsCataList})
        if (rs->isOpen())
            rs->close();
    for (Connection* c : {&connPrg, &connData})
        if (c->isOpen())
            c->close();
}

FieldBinding& ConfigBinding() {
    static FieldBinding binding;
    return binding;
}

void BindConfig(bool bind) {
    if (bind)
        ConfigBinding().bind(rsPrixList);
    else
        ConfigBinding().unbind();
}
