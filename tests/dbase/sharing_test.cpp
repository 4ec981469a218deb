// Sharing a table with another workstation's program, played by a second process that follows
// the same Clipper lock convention.
#include "dbasefixture.h"

#include "dbasepeer.h"

#include "dbase/dberror.h"
#include "dbase/recordset.h"

#include <memory>

class SharingTest : public DbaseTest {
protected:
    void SetUp() override {
        DbaseTest::SetUp();
        makeTable("PRIXLIST.DBF", {FieldDef::text("FICHIER", 8), FieldDef::text("CODEGRO", 4)},
                  {{"AAA", "AB"}, {"BBB", "CD"}, {"CCC", "EF"}});
    }
    // The other workstation holding a lock ("lock-file" or "lock-record" and a record) while
    // the peer lives; it has answered "ready" once the lock is held.
    std::unique_ptr<DbasePeer> lockedBy(const QStringList& lock) {
        auto peer = std::make_unique<DbasePeer>(DBASE_PEER, lock);
        EXPECT_EQ(peer->answer(), "ready");
        return peer;
    }
    // The other workstation changes the group code of a row (from 0) and saves it.
    QString peerSets(const char* row, const char* code) {
        return DbasePeer(DBASE_PEER, {"set", dir.path(), "PRIXLIST", row, "CODEGRO", code})
            .answer();
    }
    QStringList storedCodes() const { return rows("SELECT CODEGRO FROM PRIXLIST"); }
};

TEST_F(SharingTest, OpeningFailsWhileAnotherProcessHoldsTheFileLock) {
    {
        const auto peer = lockedBy({"lock-file", path("PRIXLIST.DBF")});
        EXPECT_DB_ERROR(open("SELECT * FROM PRIXLIST ORDER BY [DESC]"), 0x80004005 - 0x100000000LL);
        EXPECT_FALSE(rs.isOpen());
        EXPECT_DB_ERROR(connection.execute("ALTER TABLE PRIXLIST ADD COLUMN CATNO TEXT(254)"),
                        DbErrors::Fail);
    }
    rs.open("PRIXLIST", connection);
    EXPECT_EQ(rs.recordCount(), 3) << "the table opens once the lock is released";
}

TEST_F(SharingTest, AChangeMadeElsewhereIsNeverOverwrittenAndOtherRowsStillSave) {
    open("PRIXLIST", LockType::BatchOptimistic);
    for (const char* code : {"X1", "XY", "X3"}) {
        rs.setValue("CODEGRO", code);
        rs.moveNext();
    }
    ASSERT_EQ(peerSets("1", "ZZ"), "saved");
    EXPECT_DB_ERROR(rs.updateBatch(), DbErrors::RowChanged);
    EXPECT_EQ(storedCodes(), QStringList({"X1", "ZZ", "X3"}));
}

TEST_F(SharingTest, ARecordLockElsewhereStopsTheWriteAndTheRewrite) {
    const auto peer = lockedBy({"lock-record", path("PRIXLIST.DBF"), "1"});
    open("PRIXLIST");
    rs.setValue("CODEGRO", "XY");
    EXPECT_DB_ERROR(rs.update(), DbErrors::Fail);
    rs.cancelUpdate();
    rs.moveNext();
    rs.setValue("CODEGRO", "OK");
    rs.update(); // another record is free
    EXPECT_DB_ERROR(connection.execute("ALTER TABLE PRIXLIST ADD COLUMN CATNO TEXT(254)"),
                    DbErrors::Fail);
    EXPECT_EQ(peerSets("2", "P3"), "saved") << "the peer's own lock does not stop it elsewhere";
    EXPECT_EQ(storedCodes(), QStringList({"AB", "OK", "P3"}));
}
