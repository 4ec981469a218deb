#include "pricelists/treerules.h"

#include <gtest/gtest.h>

// The trees show the values as the table reads them; blanks kept after a value do not count.
TEST(TreeRules, BlanksAfterAValueDoNotPushTheColumns) {
    EXPECT_EQ(ListNodeText("A   ", "AB  ", "M  "), ListNodeText("A", "AB", "M"));
}

// The trees apply the date rules to activated lists; the download's list reads this too.
TEST(TreeRules, AListNotActivatedIsInNoBranch) {
    const QDate today(2026, 3, 16);
    const ListBranches off = BranchesOf(false, std::nullopt, today.addDays(1), today);
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
