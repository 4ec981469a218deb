// Selection of lists by name: the word typed checks the lists of the tree shown.

#include "listfixture.h"

#include "pricelists/selectbyname.h"

namespace {

QString prompt() {
    return LoadText(135) + "\n" + LoadText(136);
}

QStringList marks(const ListFixture& f) {
    QStringList m;
    for (int r = 0; r < f.state.ListCount; ++r)
        m << f.state.ListMarks(0, r);
    return m;
}

} // namespace

TEST(SelectByName, WordsAddUpStarChecksTheTabShownAndNothingClearsIt) {
    ListFixture f({{"BRAKE WIRE", "AAA", true, Past, Past, "AB"}, // up to date
                   {"FILTERS", "BBB", true, Past, {}, "CD"},      // to update
                   {"WIRE HARNESS", "CCC", true, Past, {}, "EF"}, // to update
                   {"Wire harness", "DDD", true, Past, {}, "GH"}, // to update; last in DESC order
                   {"WIRE SPOOLS", "EEE", false, Past, Past}},    // not activated
                  {});
    const ListCommandContext c = f.commands();
    ScriptedPrompter prompts;
    prompts.expectInput(prompt(), "wire").expectInput(prompt(), "filt");
    SelectByName(c);
    SelectByName(c);
    EXPECT_EQ(marks(f), QStringList({"AAA", "BBB", "CCC", "", ""}))
        << "both words stay checked; Wire harness is not WIRE; the list not shown keeps its mark";
    EXPECT_TRUE(KeyedTree::isChecked(f.list(0).node("L000")));

    // "*" on the tab of lists to update: only its lists.
    f.state.ListMarks.clearSelection();
    f.state.CurrentListTab = 1;
    prompts.expectInput(prompt(), "*");
    SelectByName(c);
    EXPECT_EQ(marks(f), QStringList({"", "BBB", "CCC", "", "DDD"}));

    // A cancelled box answers nothing: the tab shown is cleared, the others keep their marks.
    f.state.ListMarks(0, 0) = "AAA";
    prompts.expectInput(prompt(), "");
    SelectByName(c);
    EXPECT_EQ(marks(f), QStringList({"AAA", "", "", "", ""}));
    EXPECT_FALSE(KeyedTree::isChecked(f.list(1).node("L001")));
}
