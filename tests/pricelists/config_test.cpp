// The configuration pane: its key rules, the cost level default and SauveChange.

#include "listfixture.h"

#include "pricelists/configrules.h"

#include <QApplication>
#include <QWindow>

namespace {

// The fixture with the list of row 2 (C BOUGIES) shown in the pane.
struct ShownFixture : ListFixture {
    ShownFixture()
        : ListFixture({{"A FREINS", "AAA", true, Past, Past, "AB", false, 0.0},
                       {"B FILTRES", "BBB", true, Past, Past, "BOS", true, QVariant()},
                       {"C BOUGIES", "CCC", true, Past, Past, "CH", false, 2.0}},
                      {{"ABC", "Alpha"}}) {
        show("L002");
    }
    // Puts the row back as read, so that the fixture closes without a question.
    void dropChanges() {
        rsPrixList.cancelUpdate();
        state.ConfigDirty = Dirty::None;
    }
};

const QString GroupCodes = QStringLiteral("SELECT CODEGRO FROM PRIXLIST");

// The user replaces the group code by typing.
void editGroupCode(ListFixture& f, const QString& text) {
    ConfigField* field = f.configPane->txtConfig[PrixField::CodeGro];
    field->setFocus();
    field->selectAll();
    field->del();
    QTest::keyClicks(field, text);
}

// Answers No to the save question, noting whether the tree was enabled and the window's cursor.
struct WatchingPrompter final : Prompter {
    explicit WatchingPrompter(ListFixture& f) : f(f), previous(SetPrompter(this)) {}
    ~WatchingPrompter() override { SetPrompter(previous); }
    Answer messageBox(const QString& text, Buttons, Icon, const QString&) override {
        EXPECT_EQ(text, LoadText(61));
        seen << std::pair(f.list(0).isEnabled(), f.window->cursor().shape());
        return Answer::No;
    }
    QString inputBox(const QString&, const QString&, const QString&) override { return {}; }
    ListFixture& f;
    Prompter* previous;
    QList<std::pair<bool, Qt::CursorShape>> seen;
};

// Stands for a question box that takes the release of a press.
struct ReleaseEater : QObject {
    bool eventFilter(QObject*, QEvent* event) override {
        return event->type() == QEvent::MouseButtonRelease;
    }
};

} // namespace

// Every kind of box of the pane is bound to its field and marks the row as changed; an empty or
// zero cost level is saved as three as its list is shown.
TEST(Config, EachBoxOfThePaneWritesItsFieldAndMarksTheRow) {
    ShownFixture f;
    ConfigPane& pane = *f.configPane;
    EXPECT_EQ(pane.txtConfig[PrixField::DateEff]->text(), "2026.02.01");
    EXPECT_TRUE(pane.chkCH[0]->isChecked());
    EXPECT_TRUE(pane.optDe[1]->isChecked());
    pane.optDe[0]->click();
    EXPECT_EQ(f.state.ConfigDirty, Dirty::Pane);
    EXPECT_EQ(f.rsPrixList.value(PrixField::CoutDe).toDouble(), 1.0);
    f.dropChanges();
    pane.chkCH[1]->click();
    EXPECT_EQ(f.state.ConfigDirty, Dirty::Pane);
    EXPECT_TRUE(f.rsPrixList.value(PrixField::ChDesc1 + 1).toBool());
    f.dropChanges();
    pane.cmbDepart->setFocus();
    QTest::keyClick(pane.cmbDepart, Qt::Key_Down);
    EXPECT_EQ(f.state.ConfigDirty, Dirty::Pane);
    EXPECT_FALSE(f.rsPrixList.value(PrixField::Departem).isNull());
    f.dropChanges();
    for (const char* key : {"L000", "L001"})
        f.show(key);
    EXPECT_EQ(f.rows("SELECT COUTDE FROM PRIXLIST"), QStringList({"3", "3", "2"}));
    EXPECT_TRUE(pane.optDe[2]->isChecked());
    EXPECT_EQ(f.state.ConfigDirty, Dirty::None);
}

// Text fields are upper-cased and limited by field; the others take digits and the point. The
// focus selects the whole text, so typing replaces it even in a full field; Enter moves on and
// the value goes into the row.
TEST(Config, TypedKeysFollowTheFieldRulesEnterMovesOnAndFocusSelectsAll) {
    ShownFixture f;
    const std::tuple<int, QString, QString> typings[] = {
        {PrixField::CodeGro, "ab12c\bz", "AB1Z"}, // replaces the CH the focus selected
        {PrixField::CodeGro, "q", "Q"},
        {PrixField::Fournis, QString(30, 'x'), QString(25, 'X')},
        {PrixField::FirstSubGroup + 18, "abcdefghijk", "ABCDEFGHI"}, // SGR10
        {PrixField::FicFamille, "matrice01", "MATRICE0"},
        {PrixField::FirstSubGroup + 1, "7x\b8", "8"}, // SGR1PCT
        {PrixField::CodeNvc, "1a2,5%", "125"},
        {PrixField::CodeUni, "1a2", "12"},
        {PrixField::CodeAck, "1a2", "12"},
        {PrixField::CodeUap, "1a2", "12"},
        {PrixField::Pct3, "1a2", "12"},
    };
    for (const auto& [field, keys, expected] : typings) {
        ConfigField* box = f.configPane->txtConfig[field];
        box->setFocus();
        QTest::keyClicks(box, keys);
        EXPECT_EQ(box->text(), expected) << field;
        QTest::keyClick(box, Qt::Key_Return);
        EXPECT_NE(QApplication::focusWidget(), box) << field;
        EXPECT_EQ(f.rsPrixList.value(field).toString(), expected) << field;
        EXPECT_EQ(f.state.ConfigDirty, Dirty::Pane) << field;
        f.dropChanges();
    }
    EXPECT_TRUE(ConfigKeyRule(PrixField::Pct1, 0, QChar(0x663)).typed.isNull()) << "Arabic 3";
}

// The question is asked once, with the tree disabled under the hourglass; No puts everything back.
TEST(Config, AnsweringNoRestoresTheFieldDropsTheChangesAndUnchecksEveryList) {
    ShownFixture f;
    f.state.ListMarks(0, 0) = "AAA";
    f.state.ListMarks(0, 2) = "CCC";
    f.ui->refresh();
    f.show("L002");
    editGroupCode(f, "zz");
    ASSERT_EQ(QApplication::focusWidget(), f.configPane->txtConfig[PrixField::CodeGro]);
    {
        WatchingPrompter prompts(f);
        EXPECT_FALSE(f.ui->saveIfDirty());
        EXPECT_EQ(prompts.seen, (QList{std::pair(false, Qt::WaitCursor)}));
    }
    EXPECT_TRUE(f.list(0).hasFocus()) << "enabled again, and given the focus";
    EXPECT_EQ(f.window->cursor().shape(), Qt::ArrowCursor);
    EXPECT_EQ(f.configPane->txtConfig[PrixField::CodeGro]->text(), "CH");
    EXPECT_EQ(f.rows(GroupCodes).last(), "CH");
    EXPECT_EQ(f.state.ConfigDirty, Dirty::None);
    EXPECT_EQ(f.state.ListMarks.selectedCount(), 0);
    EXPECT_FALSE(KeyedTree::isChecked(f.list(0).node("L000")));
}

// The press that takes the focus from the pane asks first; the question box then takes the
// release. The highlighted list, the pane and the part-search prefix agree all along.
TEST(Config, ClickingAnotherListWithChangesPendingAsksFirst) {
    ShownFixture f;
    editGroupCode(f, "xy");
    KeyedTree& tree = f.list(0);
    QWindow* window = f.window->windowHandle();
    const QPoint other = tree.viewport()->mapTo(f.window.get(), OnText(tree, tree.node("L000")));
    const auto expectShown = [&](const char* when) {
        EXPECT_EQ(KeyedTree::keyOf(tree.selectedNode()), "L002") << when;
        EXPECT_EQ(f.state.CurrentListRow, 2) << when;
        EXPECT_EQ(f.configPane->lblConfig[PrixField::Desc]->text(), "C BOUGIES") << when;
        EXPECT_EQ(f.groupCode, "XY") << when;
    };
    ScriptedPrompter prompts;
    prompts.expectMessage(LoadText(61), Buttons::YesNo, Icon::Warning, {}, Answer::Yes);
    QTest::mousePress(window, Qt::LeftButton, {}, other);
    expectShown("after the press");
    QTest::mouseRelease(window, Qt::LeftButton, {}, other);
    expectShown("after the release");
    // The edited list was saved, not the one clicked.
    EXPECT_EQ(f.rows(GroupCodes), QStringList({"AB", "BOS", "XY"}));
    EXPECT_EQ(f.state.ConfigDirty, Dirty::None);

    // The release goes to the question box: the next click is a whole click.
    editGroupCode(f, "ac");
    const QPoint third = tree.viewport()->mapTo(f.window.get(), OnText(tree, tree.node("L001")));
    prompts.expectMessage(LoadText(61), Buttons::YesNo, Icon::Warning, {}, Answer::Yes);
    QTest::mousePress(window, Qt::LeftButton, {}, third);
    {
        ReleaseEater box;
        tree.viewport()->installEventFilter(&box);
        QTest::mouseRelease(window, Qt::LeftButton, {}, third);
    }
    QTest::mouseClick(window, Qt::LeftButton, {}, third);
    EXPECT_EQ(KeyedTree::keyOf(tree.selectedNode()), "L001");
    EXPECT_EQ(f.configPane->lblConfig[PrixField::Desc]->text(), "B FILTRES");
}

TEST(Config, AnEmptiedRequiredGroupCodeIsRefusedWithItsListAsTitle) {
    ShownFixture f;
    editGroupCode(f, "");
    ScriptedPrompter prompts;
    prompts.expectMessage(LoadText(61), Buttons::YesNo, Icon::Warning, {}, Answer::Yes);
    prompts.expectMessage(LoadText(138), Buttons::Ok, Icon::None, "C BOUGIES", Answer::Ok);
    f.ui->saveIfDirty();
    EXPECT_EQ(f.rows(GroupCodes).last(), "CH");
    EXPECT_EQ(f.rsPrixList.value(PrixField::CodeGro).toString(), "CH");
    EXPECT_EQ(f.state.ConfigDirty, Dirty::None);

    // A list that needs no group code is saved without one.
    f.show("L001");
    editGroupCode(f, "");
    prompts.expectMessage(LoadText(61), Buttons::YesNo, Icon::Warning, {}, Answer::Yes);
    EXPECT_FALSE(f.ui->saveIfDirty());
    EXPECT_EQ(f.rows(GroupCodes), QStringList({"AB", "", "CH"}));
}

// A value its field cannot hold is refused as the field is left, however it is left: by Tab,
// by Enter, or by a press elsewhere in the window as the window system delivers it.
TEST(Config, AValueTheFieldCannotHoldKeepsTheFieldAndIsNotWritten) {
    ShownFixture f;
    QWindow* window = f.window->windowHandle();
    ConfigField* date = f.configPane->txtConfig[PrixField::DateEff];
    const QVariant storedDate = f.rsPrixList.value(PrixField::DateEff);
    ScriptedPrompter prompts;
    for (const auto& [text, key] :
         {std::pair{"2026.13.01", Qt::Key_Tab}, std::pair{"2026.11.5", Qt::Key_Return}}) {
        date->setFocus();
        date->selectAll();
        QTest::keyClicks(date, text);
        prompts.expectMessage(LoadText(146), Buttons::Ok, Icon::Warning, {}, Answer::Ok);
        QTest::keyClick(window, key);
        EXPECT_EQ(QApplication::focusWidget(), date) << text;
        EXPECT_EQ(date->text(), text);
        EXPECT_EQ(f.rsPrixList.value(PrixField::DateEff), storedDate) << text;
    }
    // Corrected, the date goes into the row as the field is left.
    date->selectAll();
    QTest::keyClicks(date, "2026.11.05");
    QTest::keyClick(window, Qt::Key_Tab);
    EXPECT_EQ(f.rsPrixList.value(PrixField::DateEff).toDate(), QDate(2026, 11, 5));

    // Too wide for N6.2: the click on another list goes nowhere, even when it comes while
    // another window is active (as after the message box).
    ConfigField* percent = f.configPane->txtConfig[PrixField::CoutPct];
    percent->setFocus();
    QTest::keyClicks(percent, "1000");
    QWidget elsewhere;
    elsewhere.show();
    elsewhere.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&elsewhere));
    KeyedTree& tree = f.list(0);
    const QPoint other = tree.viewport()->mapTo(f.window.get(), OnText(tree, tree.node("L000")));
    prompts.expectMessage(LoadText(147), Buttons::Ok, Icon::Warning, {}, Answer::Ok);
    QTest::mouseClick(window, Qt::LeftButton, {}, other);
    EXPECT_EQ(f.window->focusWidget(), percent);
    EXPECT_EQ(percent->text(), "1000");
    EXPECT_EQ(KeyedTree::keyOf(tree.selectedNode()), "L002");
    EXPECT_EQ(f.configPane->lblConfig[PrixField::Desc]->text(), "C BOUGIES");

    f.window->activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(f.window.get()));
    QTest::keyClick(percent, Qt::Key_End);
    QTest::keyClick(percent, Qt::Key_Backspace);
    date->setFocus();
    EXPECT_DOUBLE_EQ(f.rsPrixList.value(PrixField::CoutPct).toDouble(), 100);
    f.dropChanges();
}
