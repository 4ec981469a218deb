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

// The trees apply the date rules to activated lists; the download's list reads this too.
TEST(TreeRules, AListNotActivatedIsInNoBranch) {
    const ListBranches off = BranchesOf(false, std::nullopt, Today.addDays(1), Today);
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
