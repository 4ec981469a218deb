// Recordsets as the program drives them: moves, edits in both lock types, filters, find.
#include "dbasefixture.h"

#include <QSignalSpy>
#include <functional>

class RecordsetTest : public DbaseTest {
protected:
    void SetUp() override {
        DbaseTest::SetUp();
        makeTable("PRIXLIST.DBF",
                  {FieldDef::logical("UTILISER"), FieldDef::text("DESC", 12),
                   FieldDef::text("FICHIER", 4), FieldDef::text("CODEGRO", 4),
                   FieldDef::logical("PASOBLIGER"), FieldDef::text("CATNO", 20)},
                  {{true, "Delta", "D", "AB", false, "XYZ;"},
                   {false, "Alpha", "A", "AB", true, QVariant()},
                   {true, "Charlie", "C", "CD", false, "ABC;XYZ;"},
                   {true, "Bravo", "B", "AB", false, QVariant()}});
        open("SELECT * FROM PRIXLIST ORDER BY [DESC]");
    }
};

TEST_F(RecordsetTest, MovesAndPositions) {
    EXPECT_EQ(rs.recordCount(), 4);
    EXPECT_EQ(rs.absolutePosition(), 1);
    EXPECT_FALSE(rs.bof());
    rs.move(2, MoveStart::First);
    EXPECT_EQ(rs.value("FICHIER").toString(), "C");
    rs.move(1);
    EXPECT_EQ(rs.absolutePosition(), 4);
    rs.moveNext();
    EXPECT_EQ(rs.absolutePosition(), PositionEof);
    EXPECT_DB_ERROR(rs.moveNext(), DbErrors::NoCurrentRow);
    EXPECT_DB_ERROR(rs.value(0), DbErrors::NoCurrentRow);
    rs.moveLast();
    rs.move(-10);
    EXPECT_EQ(rs.absolutePosition(), PositionBof);
    EXPECT_DB_ERROR(rs.movePrevious(), DbErrors::NoCurrentRow);
    rs.move(10, MoveStart::First);
    EXPECT_TRUE(rs.eof());
    rs.setAbsolutePosition(2);
    EXPECT_EQ(rs.value(2).toString(), "B");
    EXPECT_DB_ERROR(rs.value(6), DbErrors::NoSuchField);
    EXPECT_DB_ERROR(rs.value("NOPE"), DbErrors::NoSuchField);
}

TEST_F(RecordsetTest, AClosedRecordsetRefusesEverythingWith3704) {
    EXPECT_DB_ERROR(rs.setLockType(LockType::BatchOptimistic), DbErrors::Open);
    rs.close();
    const std::function<void()> calls[] = {[&] { rs.moveFirst(); },   [&] { rs.value(0); },
                                           [&] { rs.recordCount(); }, [&] { rs.eof(); },
                                           [&] { rs.setFilter(""); }, [&] { rs.requery(); },
                                           [&] { rs.update(); },      [&] { rs.close(); }};
    for (const auto& call : calls)
        EXPECT_DB_ERROR(call(), 3704);
}

TEST_F(RecordsetTest, OptimisticEditsAreSavedOnUpdateOrWhenMovingOff) {
    QSignalSpy moved(&rs, &Recordset::currentRowChanged);
    QSignalSpy edited(&rs, &Recordset::valueChanged);
    rs.setValue("CODEGRO", "NEW");
    EXPECT_EQ(edited, QList<QVariantList>({{3}})) << "one change, of the field at index 3";
    EXPECT_EQ(rs.editMode(), EditMode::InProgress);
    EXPECT_EQ(rs.storedValue(3).toString(), "AB");
    rs.moveNext(); // Alpha is saved by leaving it
    EXPECT_EQ(moved.count(), 1);
    EXPECT_EQ(storedCodes(), QStringList({"AB", "NEW", "CD", "AB"}));
    rs.setValue("CODEGRO", "");
    rs.cancelUpdate();
    EXPECT_EQ(rs.value("CODEGRO").toString(), "AB");
    rs.addNew();
    rs.setValue("FICHIER", "E");
    rs.cancelUpdate();
    EXPECT_EQ(rs.recordCount(), 4);
    EXPECT_EQ(rs.value("FICHIER").toString(), "B") << "back on the row before addNew";
}

TEST_F(RecordsetTest, BatchEditsStayPendingUntilUpdateBatch) {
    // Reopened with its former source and a new lock type, as activation does.
    rs.close();
    rs.setLockType(LockType::BatchOptimistic);
    rs.open();
    rs.setValue("CODEGRO", "X1");
    rs.move(3, MoveStart::First);
    rs.setValue("CODEGRO", "X4");
    rs.setValue("UTILISER", true);
    rs.moveFirst();
    EXPECT_EQ(rs.value("CODEGRO").toString(), "X1") << "pending values stay visible";
    EXPECT_TRUE(rs.hasPendingChanges());
    EXPECT_EQ(storedCodes(), QStringList({"AB", "AB", "CD", "AB"}));
    rs.updateBatch();
    EXPECT_FALSE(rs.hasPendingChanges());
    EXPECT_EQ(storedCodes(), QStringList({"X4", "X1", "CD", "AB"}));

    rs.setValue("CODEGRO", "Y1");
    rs.addNew();
    rs.setValue("FICHIER", "E");
    rs.moveFirst();
    rs.cancelBatch();
    EXPECT_EQ(rs.recordCount(), 4);
    EXPECT_EQ(rs.value("CODEGRO").toString(), "X1");
    rs.setValue("CODEGRO", "Y2");
    connection.close();
    EXPECT_DB_ERROR(rs.updateBatch(), 3704);
    rs.close(); // a batch not written is dropped with the recordset
    EXPECT_EQ(storedCodes(), QStringList({"X4", "X1", "CD", "AB"}));
}

TEST_F(RecordsetTest, FiltersWithTheProgramsExpressions) {
    rs.setFilter("[UTILISER] = True AND [CODEGRO]='AB'");
    EXPECT_EQ(column(rs, "FICHIER"), QStringList({"B", "D"}));
    rs.setFilter("[CODEGRO] = 'CD' OR [PASOBLIGER] = -1");
    EXPECT_EQ(column(rs, "FICHIER"), QStringList({"A", "C"}));
    rs.setFilter("[FICHIER] = 'C'");
    EXPECT_EQ(rs.absolutePosition(), 1);
    rs.setValue("CATNO", "ABC;");
    rs.setFilter("");
    EXPECT_EQ(rs.recordCount(), 4);
    rs.move(2, MoveStart::First);
    EXPECT_EQ(rs.value("CATNO").toString(), "ABC;") << "the filtered row was saved";
    rs.setFilter("[FICHIER] = 'Q'");
    EXPECT_TRUE(rs.eof() && rs.bof());
    EXPECT_EQ(rs.absolutePosition(), PositionUnknown);
    EXPECT_DB_ERROR(rs.setFilter("[CODEGRO] = [FICHIER]"), DbErrors::Syntax);
    EXPECT_DB_ERROR(rs.setFilter("[NOPE] = 1"), DbErrors::NoSuchField);
    EXPECT_EQ(rs.filter(), "[FICHIER] = 'Q'") << "a refused filter leaves the former one";
}

TEST_F(RecordsetTest, FindFromTheFirstOrTheCurrentRow) {
    rs.find("FICHIER = 'C'", 0, SearchDirection::Forward, MoveStart::First);
    EXPECT_EQ(rs.absolutePosition(), 3);
    rs.find("[CODEGRO] = 'CD'", 1);
    EXPECT_TRUE(rs.eof()) << "nothing after Charlie matches";
    rs.moveFirst();
    rs.find("[CODEGRO] = 'AB'", 1);
    EXPECT_EQ(rs.value("FICHIER").toString(), "B") << "skipping the current row";
    rs.find("FICHIER = 'A'", 0, SearchDirection::Backward);
    EXPECT_EQ(rs.absolutePosition(), 1);
    EXPECT_DB_ERROR(rs.find("FICHIER = 'A' AND CODEGRO = 'AB'"), DbErrors::Syntax);
}

TEST_F(RecordsetTest, RequerySeesTheTableAsItIsNowAndKeepsTheFilter) {
    Recordset other;
    other.open("PRIXLIST", connection, CursorType::Keyset, LockType::Optimistic);
    other.addNew();
    EXPECT_EQ(other.editMode(), EditMode::Add);
    other.setValue("FICHIER", "E");
    other.update();
    // Appended whole: the fifth record, then the end-of-file mark.
    EXPECT_EQ(bytes("PRIXLIST.DBF").mid(32 + 6 * 32 + 1 + 5 * 43), "\x1A");
    EXPECT_EQ(rs.recordCount(), 4);
    rs.setFilter("[UTILISER] = True");
    rs.requery();
    EXPECT_EQ(rs.filter(), "[UTILISER] = True");
    rs.setFilter("");
    EXPECT_EQ(column(rs, "FICHIER"), QStringList({"E", "A", "B", "C", "D"}));
}
