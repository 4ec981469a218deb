#include "pricelists/treerules.h"

#include <gtest/gtest.h>

const QDate Today(2026, 3, 16);

TEST(TreeRules, NodeTextPadsDescAndGroupCodeIntoColumns) {
    EXPECT_EQ(ListNodeText("BOSCH FREINS", "BOS", "MATBOS"),
              QString("BOSCH FREINS").leftJustified(34) + "BOS  " + "MATBOS");
    // Null group code and matrix: the columns are kept, nothing follows.
    EXPECT_EQ(ListNodeText("A", "", ""), QString("A").leftJustified(34) + "     ");
    // A desc of 34 characters or more is shown whole, the code right after it.
    EXPECT_EQ(ListNodeText(QString(40, 'X'), "AB", "M"), QString(40, 'X') + "AB   M");
    // Blanks a table keeps after a value do not push the columns.
    EXPECT_EQ(ListNodeText("A   ", "AB  ", "M  "), ListNodeText("A", "AB", "M"));
}

TEST(TreeRules, BranchOfEachDateCase) {
    const QDate before = Today.addDays(-20);
    const QDate tomorrow = Today.addDays(1);
    struct Case {
        const char* name;
        std::optional<QDate> stk, eff;
        OleColor color;
    } cases[] = {
        {"both dates null", std::nullopt, std::nullopt, ColorToUpdate},
        {"DATESTK null", std::nullopt, before, ColorToUpdate},
        {"DATEEFF null", before, std::nullopt, ColorUpToDate},
        {"same dates", before, before, ColorUpToDate},
        {"dates differ", before.addDays(-3), before, ColorToUpdate},
        {"DATEEFF today, dates differ", before, Today, ColorToUpdate},
        {"DATEEFF today, same dates", Today, Today, ColorUpToDate},
        {"DATEEFF tomorrow, dates differ", before, tomorrow, ColorUpcoming},
        {"DATEEFF tomorrow, DATESTK null", std::nullopt, tomorrow, ColorUpcoming},
    };
    for (const Case& c : cases) {
        const ListBranches b = BranchesOf(true, c.stk, c.eff, Today);
        EXPECT_EQ(b.color, c.color) << c.name;
        EXPECT_TRUE(b.activated) << c.name;
        EXPECT_EQ(b.toUpdate, c.color == ColorToUpdate) << c.name;
        EXPECT_EQ(b.upcoming, c.color == ColorUpcoming) << c.name;
    }
    const ListBranches off = BranchesOf(false, std::nullopt, tomorrow, Today);
    EXPECT_EQ(off.color, ColorInactive);
    EXPECT_FALSE(off.activated || off.toUpdate || off.upcoming);
}

TEST(TreeRules, CatnoIsReadCodeByCodeUpToEachSemicolon) {
    EXPECT_EQ(CatnoCodes("ABC;XYZ;"), (QStringList{"ABC", "XYZ"}));
    EXPECT_EQ(CatnoCodes("ABC;XYZ"), (QStringList{"ABC"}));
    EXPECT_TRUE(CatnoCodes("ABC").isEmpty());
    EXPECT_TRUE(CatnoCodes("").isEmpty());
    EXPECT_TRUE(CatnoCodes(";ABC;").isEmpty());
    EXPECT_EQ(CatnoCodes("AB;;XYZ;"), (QStringList{"AB"}));
}

// Text fields are upper-cased and limited by field; the others take digits and the point.
