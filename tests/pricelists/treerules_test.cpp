#include "pricelists/configrules.h"
#include "pricelists/treerules.h"

#include <gtest/gtest.h>

namespace {

const QDate Today(2026, 3, 16);

QString typed(int field, const QString& keys) {
    QString text;
    for (QChar key : keys) {
        const ConfigKey answer = ConfigKeyRule(field, int(text.size()), key);
        if (answer.typed.unicode() == KeyBackspace)
            text.chop(1);
        else if (!answer.typed.isNull())
            text += answer.typed;
    }
    return text;
}

} // namespace

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
TEST(ConfigKeys, EachFieldTakesWhatItsRuleAllows) {
    EXPECT_EQ(typed(PrixField::CodeGro, "ab12c\bz"), "AB1Z");
    EXPECT_EQ(typed(PrixField::Fournis, QString(30, 'x')), QString(25, 'X'));
    EXPECT_EQ(typed(39, "abcdefghijk"), "ABCDEFGHI");
    EXPECT_EQ(typed(PrixField::FicFamille, "matrice01"), "MATRICE0");
    EXPECT_EQ(typed(22, "7x\b8"), "8");
    EXPECT_EQ(typed(PrixField::CodeNvc, "1a2,5%"), "125");
    EXPECT_EQ(typed(PrixField::Pct1, QString::fromUtf8("٣")), ""); // digits of other scripts
}
