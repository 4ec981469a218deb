// Sharing a table with another workstation's program, played by a second process that follows
// the same Clipper lock convention.
#include "dbasefixture.h"

#include "dbasepeer.h"

#include "dbase/dberror.h"
#include "dbase/recordset.h"

#include <QProcess>

namespace {

// The other workstation, in a process of its own.
class Peer : public DbasePeer {
public:
    explicit Peer(const QStringList& args) : DbasePeer(QStringLiteral(DBASE_PEER), args) {}
};

QString runPeer(const QStringList& args) {
    return Peer(args).answer();
}

} // namespace

class SharingTest : public DbaseTest {
protected:
    void SetUp() override {
        DbaseTest::SetUp();
        makeTable("PRIXLIST.DBF", {textField("FICHIER", 8), textField("CODEGRO", 4)},
                  {{"AAA", "AB"}, {"BBB", "CD"}, {"CCC", "EF"}});
    }
};

TEST_F(SharingTest, OpeningFailsWhileAnotherProcessHoldsTheFileLock) {
    {
        Peer peer({"lock-file", path("PRIXLIST.DBF")});
        ASSERT_EQ(peer.answer(), "ready");
        Recordset rs;
        EXPECT_DB_ERROR(rs.open("SELECT * FROM PRIXLIST ORDER BY [DESC]", connection,
                                CursorType::Keyset, LockType::Optimistic),
                        0x80004005 - 0x100000000LL);
        EXPECT_FALSE(rs.isOpen());
        EXPECT_DB_ERROR(connection.execute("ALTER TABLE PRIXLIST ADD COLUMN CATNO TEXT(254)"),
                        DbErrors::Fail);
    }
    Recordset rs;
    rs.open("PRIXLIST", connection);
    EXPECT_EQ(rs.recordCount(), 3) << "the table opens once the lock is released";
}

TEST_F(SharingTest, AChangeMadeElsewhereIsNeverOverwritten) {
    Recordset rs;
    rs.open("PRIXLIST", connection, CursorType::Keyset, LockType::Optimistic);
    ASSERT_EQ(runPeer({"set", dir.path(), "PRIXLIST", "1", "CODEGRO", "ZZ"}), "saved");
    rs.move(1, MoveStart::First);
    rs.setValue("CODEGRO", "XY");
    EXPECT_DB_ERROR(rs.update(), DbErrors::RowChanged);
    rs.cancelUpdate();
    rs.requery();
    rs.move(1, MoveStart::First);
    EXPECT_EQ(rs.value("CODEGRO").toString(), "ZZ") << "the other workstation's change stands";
}

TEST_F(SharingTest, ChangesToDifferentRowsBothStay) {
    Recordset rs;
    rs.open("PRIXLIST", connection, CursorType::Keyset, LockType::BatchOptimistic);
    rs.moveFirst();
    rs.setValue("CODEGRO", "X1");
    rs.moveLast();
    rs.setValue("CODEGRO", "X3");
    ASSERT_EQ(runPeer({"set", dir.path(), "PRIXLIST", "1", "CODEGRO", "P2"}), "saved");
    rs.updateBatch();
    EXPECT_EQ(stored("PRIXLIST", "CODEGRO"), QStringList({"X1", "P2", "X3"}));
}

TEST_F(SharingTest, ARecordLockElsewhereStopsTheWriteAndTheRewrite) {
    Peer peer({"lock-record", path("PRIXLIST.DBF"), "1"});
    ASSERT_EQ(peer.answer(), "ready");
    Recordset rs;
    rs.open("PRIXLIST", connection, CursorType::Keyset, LockType::Optimistic);
    rs.setValue("CODEGRO", "XY");
    EXPECT_DB_ERROR(rs.update(), DbErrors::Fail);
    rs.cancelUpdate();
    rs.moveNext();
    rs.setValue("CODEGRO", "OK");
    rs.update(); // another record is free
    EXPECT_DB_ERROR(connection.execute("ALTER TABLE PRIXLIST ADD COLUMN CATNO TEXT(254)"),
                    DbErrors::Fail);
    EXPECT_EQ(runPeer({"set", dir.path(), "PRIXLIST", "2", "CODEGRO", "P3"}), "saved")
        << "the peer's own lock does not stop it on another record";
}
