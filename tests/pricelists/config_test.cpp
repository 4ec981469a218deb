// The configuration pane: its key rules, the cost level default and SauveChange.

#include "listfixture.h"

#include "app/messages.h"
#include "pricelists/configeditor.h"
#include "pricelists/configpane.h"
#include "pricelists/keyedtree.h"
#include "pricelists/treeinteractions.h"
#include "pricelists/treepanes.h"
#include "scriptedprompter.h"

#include <QApplication>
#include <QTest>
#include <QWindow>
#include <gtest/gtest.h>

namespace {

const QDate Past(2026, 2, 1);

QList<ListRow> lists() {
    return {{"A FREINS", "AAA", true, Past, Past, "AB", false, 0.0},
            {"B FILTRES", "BBB", true, Past, Past, "BOS", true, QVariant()},
            {"C BOUGIES", "CCC", true, Past, Past, "CH", false, 2.0}};
}

QList<CatalogueRow> catalogues() {
    return {{"ABC", "Alpha"}};
}

// Shows a list as a click on its node in the first tree does.
void show(ListFixture& f, const QString& key) {
    KeyedTree& tree = f.list(0);
    tree.selectNode(tree.node(key));
    f.ui->Nodeclick(0, tree.node(key));
}

// The user replaces the group code by typing.
void editGroupCode(ListFixture& f, const QString& text) {
    ConfigField* field = f.configPane->txtConfig[PrixField::CodeGro];
    field->setFocus();
    field->selectAll();
    field->del();
    for (QChar c : text)
        QTest::keyClick(field, c.toLatin1());
}

// A point on the text of a node, well clear of its check box.
QPoint onText(KeyedTree& tree, QTreeWidgetItem* node) {
    const QRect box = tree.checkBoxRect(node);
    return {box.right() + 60, box.center().y()};
}

void expectSaveQuestion(ScriptedPrompter& prompts, Answer answer) {
    prompts.expectMessage(LoadText(61), Buttons::YesNo, Icon::Warning, QString(), answer);
}

} // namespace

TEST(Config, AnEmptyOrZeroCostLevelIsSavedAsThree) {
    ListFixture f(lists(), catalogues());
    f.ui->refresh();
    show(f, "L000");
    EXPECT_EQ(f.storedField("AAA", "COUTDE").toDouble(), 3.0);
    EXPECT_TRUE(f.configPane->optDe[2]->isChecked());
    show(f, "L001");
    EXPECT_EQ(f.storedField("BBB", "COUTDE").toDouble(), 3.0);
    show(f, "L002");
    EXPECT_EQ(f.storedField("CCC", "COUTDE").toDouble(), 2.0);
    EXPECT_TRUE(f.configPane->optDe[1]->isChecked());
    EXPECT_EQ(f.state.ConfigDirty, Dirty::None);

    // Choosing another level marks the row as changed.
    f.configPane->optDe[0]->click();
    EXPECT_EQ(f.state.ConfigDirty, Dirty::Pane);
    EXPECT_EQ(f.rsPrixList.value(PrixField::CoutDe).toDouble(), 1.0);
}

TEST(Config, TypedKeysFollowTheFieldRules) {
    ListFixture f(lists(), catalogues());
    f.ui->refresh();
    show(f, "L002");
    ConfigPane& pane = *f.configPane;
    ConfigField* code = pane.txtConfig[PrixField::CodeGro];
    code->setText("");
    code->setFocus();
    QTest::keyClicks(code, "ab12c");
    EXPECT_EQ(code->text(), "AB12");
    EXPECT_EQ(f.state.ConfigDirty, Dirty::Pane);
    EXPECT_TRUE(f.rsPrixList.value(PrixField::Utiliser).toBool());
    QTest::keyClick(code, Qt::Key_Backspace);
    EXPECT_EQ(code->text(), "AB1");

    // Enter types nothing and moves on.
    QTest::keyClick(code, Qt::Key_Return);
    EXPECT_EQ(code->text(), "AB1");
    EXPECT_NE(QApplication::focusWidget(), code);

    // The focus selects the whole text, which typing then replaces, even in a full field.
    code->setText("WXYZ");
    pane.txtConfig[PrixField::CoutPct]->setFocus();
    code->setFocus();
    EXPECT_EQ(code->selectedText(), "WXYZ");
    QTest::keyClicks(code, "q");
    EXPECT_EQ(code->text(), "Q");
    f.rsPrixList.cancelUpdate();
    f.state.ConfigDirty = Dirty::None;
}

TEST(Config, AnsweringNoRestoresTheFieldDropsTheChangesAndUnchecksEveryList) {
    ListFixture f(lists(), catalogues());
    f.ui->refresh();
    f.state.ListMarks(0, 0) = "AAA";
    f.state.ListMarks(0, 2) = "CCC";
    f.ui->refresh();
    show(f, "L002");
    editGroupCode(f, "ZZ");
    ASSERT_EQ(f.state.ConfigDirty, Dirty::Pane);
    ASSERT_EQ(QApplication::focusWidget(), f.configPane->txtConfig[PrixField::CodeGro]);
    {
        ScriptedPrompter prompts;
        expectSaveQuestion(prompts, Answer::No);
        EXPECT_TRUE(!f.ui->saveIfDirty());
    }
    EXPECT_EQ(f.configPane->txtConfig[PrixField::CodeGro]->text(), "CH");
    EXPECT_EQ(f.storedField("CCC", "CODEGRO").toString(), "CH");
    EXPECT_EQ(f.state.ConfigDirty, Dirty::None);
    EXPECT_EQ(f.state.ListMarks.selectedCount(), 0);
    EXPECT_FALSE(KeyedTree::isChecked(f.list(0).node("L000")));
    EXPECT_FALSE(KeyedTree::isChecked(f.list(0).node("L002")));
    EXPECT_TRUE(f.list(0).isEnabled());
    EXPECT_EQ(f.window->cursor().shape(), Qt::ArrowCursor);
}

// Stands for a question box that takes the release of a press.
class ReleaseEater : public QObject {
public:
    explicit ReleaseEater(QWidget* target) : target_(target) { target_->installEventFilter(this); }
    ~ReleaseEater() override { target_->removeEventFilter(this); }
    bool eventFilter(QObject*, QEvent* event) override {
        return event->type() == QEvent::MouseButtonRelease;
    }

private:
    QWidget* target_;
};

// The press that takes the focus from the pane asks first; the question box then takes the
// release. The highlighted list, the pane and the part-search prefix agree all along.
TEST(Config, ClickingAnotherListWithChangesPendingAsksFirst) {
    ListFixture f(lists(), catalogues());
    f.ui->refresh();
    show(f, "L002");
    editGroupCode(f, "XY");
    KeyedTree& tree = f.list(0);
    QWindow* window = f.window->windowHandle();
    const QPoint other = tree.viewport()->mapTo(f.window.get(), onText(tree, tree.node("L000")));
    const auto expectShown = [&](const char* when) {
        EXPECT_EQ(KeyedTree::keyOf(tree.selectedNode()), "L002") << when;
        EXPECT_EQ(f.state.CurrentListRow, 2) << when;
        EXPECT_EQ(f.configPane->lblConfig[PrixField::Desc]->text(), "C BOUGIES") << when;
        EXPECT_EQ(f.groupCode, "XY") << when;
    };
    {
        ScriptedPrompter prompts;
        expectSaveQuestion(prompts, Answer::Yes);
        QTest::mousePress(window, Qt::LeftButton, {}, other);
    }
    expectShown("after the press");
    QTest::mouseRelease(window, Qt::LeftButton, {}, other);
    expectShown("after the release");
    // The edited list was saved, not the one clicked.
    EXPECT_EQ(f.storedField("CCC", "CODEGRO").toString(), "XY");
    EXPECT_EQ(f.storedField("AAA", "CODEGRO").toString(), "AB");
    EXPECT_EQ(f.state.ConfigDirty, Dirty::None);

    // Clicked again, the list is shown.
    QTest::mouseClick(window, Qt::LeftButton, {}, other);
    EXPECT_EQ(KeyedTree::keyOf(tree.selectedNode()), "L000");
    EXPECT_EQ(f.configPane->lblConfig[PrixField::Desc]->text(), "A FREINS");
    EXPECT_EQ(f.groupCode, "AB");

    // The release goes to the question box: the next click is a whole click.
    editGroupCode(f, "AC");
    const QPoint third = tree.viewport()->mapTo(f.window.get(), onText(tree, tree.node("L001")));
    {
        ScriptedPrompter prompts;
        expectSaveQuestion(prompts, Answer::Yes);
        QTest::mousePress(window, Qt::LeftButton, {}, third);
    }
    {
        ReleaseEater box(tree.viewport());
        QTest::mouseRelease(window, Qt::LeftButton, {}, third);
    }
    QTest::mouseClick(window, Qt::LeftButton, {}, third);
    EXPECT_EQ(KeyedTree::keyOf(tree.selectedNode()), "L001");
    EXPECT_EQ(f.configPane->lblConfig[PrixField::Desc]->text(), "B FILTRES");
}

TEST(Config, AnEmptiedRequiredGroupCodeIsRefusedWithItsListAsTitle) {
    ListFixture f(lists(), catalogues());
    f.ui->refresh();
    show(f, "L002");
    editGroupCode(f, "");
    {
        ScriptedPrompter prompts;
        expectSaveQuestion(prompts, Answer::Yes);
        prompts.expectMessage(LoadText(138), Buttons::Ok, Icon::None, "C BOUGIES", Answer::Ok);
        f.ui->saveIfDirty();
    }
    EXPECT_EQ(f.storedField("CCC", "CODEGRO").toString(), "CH");
    EXPECT_EQ(f.rsPrixList.value(PrixField::CodeGro).toString(), "CH");
    EXPECT_EQ(f.state.ConfigDirty, Dirty::None);

    // A list that needs no group code is saved without one.
    show(f, "L001");
    editGroupCode(f, "");
    {
        ScriptedPrompter prompts;
        expectSaveQuestion(prompts, Answer::Yes);
        EXPECT_FALSE(f.ui->saveIfDirty());
    }
    EXPECT_TRUE(f.storedField("BBB", "CODEGRO").isNull());
}

TEST(Config, ABatchOfActivationsIsWrittenAtOnce) {
    ListFixture f(lists(), catalogues());
    f.ui->refresh();
    f.rsPrixList.move(1, MoveStart::First);
    f.rsPrixList.setValue(PrixField::Fournis, "NORVALE");
    f.state.ConfigDirty = Dirty::Batch;
    {
        ScriptedPrompter prompts;
        expectSaveQuestion(prompts, Answer::Yes);
        f.ui->saveChanges();
    }
    EXPECT_EQ(f.storedField("BBB", "FOURNIS").toString(), "NORVALE");
}

TEST(Config, ThePaneShowsTheListClickedAndMarksEveryKindOfEdit) {
    ListFixture f(lists(), catalogues());
    f.ui->refresh();
    show(f, "L002");
    ConfigPane& pane = *f.configPane;
    EXPECT_EQ(pane.txtConfig[PrixField::CodeGro]->text(), "CH");
    EXPECT_EQ(pane.txtConfig[PrixField::DateEff]->text(), "2026.02.01");
    EXPECT_TRUE(pane.chkCH[0]->isChecked());
    EXPECT_FALSE(pane.chkCH[1]->isChecked());
    EXPECT_EQ(pane.cmbDepart->count(), 13);

    pane.chkCH[1]->click();
    EXPECT_EQ(f.state.ConfigDirty, Dirty::Pane);
    EXPECT_TRUE(f.rsPrixList.value(PrixField::ChDesc1 + 1).toBool());
    f.rsPrixList.cancelUpdate();
    f.state.ConfigDirty = Dirty::None;

    pane.cmbDepart->setFocus();
    QTest::keyClick(pane.cmbDepart, Qt::Key_Down);
    EXPECT_EQ(f.state.ConfigDirty, Dirty::Pane);
    EXPECT_FALSE(f.rsPrixList.value(PrixField::Departem).isNull());
    f.rsPrixList.cancelUpdate();
    f.state.ConfigDirty = Dirty::None;
}

namespace {

// Answers the save question while noting what the window looked like when it was asked.
class WatchingPrompter final : public Prompter {
public:
    WatchingPrompter(QWidget& window, QWidget& tree) : window_(window), tree_(tree) {
        previous_ = SetPrompter(this);
    }
    ~WatchingPrompter() override { SetPrompter(previous_); }

    Answer messageBox(const QString&, Buttons, Icon, const QString&) override {
        ++asked;
        treeEnabled = tree_.isEnabled();
        cursor = window_.cursor().shape();
        return Answer::No;
    }
    QString inputBox(const QString&, const QString&, const QString&) override { return {}; }

    int asked = 0;
    bool treeEnabled = true;
    Qt::CursorShape cursor = Qt::ArrowCursor;

private:
    QWidget& window_;
    QWidget& tree_;
    Prompter* previous_ = nullptr;
};

} // namespace

TEST(Config, TheQuestionIsAskedWithTheTreeDisabledUnderTheHourglass) {
    ListFixture f(lists(), catalogues());
    f.ui->refresh();
    show(f, "L002");
    editGroupCode(f, "QQ");
    {
        WatchingPrompter prompts(*f.window, f.list(0));
        f.ui->saveIfDirty();
        EXPECT_EQ(prompts.asked, 1);
        EXPECT_FALSE(prompts.treeEnabled);
        EXPECT_EQ(prompts.cursor, Qt::WaitCursor);
    }
    EXPECT_TRUE(f.list(0).isEnabled());
    EXPECT_TRUE(f.list(0).hasFocus());
    EXPECT_EQ(f.window->cursor().shape(), Qt::ArrowCursor);
}

// A value its field cannot hold is refused as the field is left, however it is left: by Tab,
// by Enter, or by a press elsewhere in the window as the window system delivers it.
TEST(Config, AValueTheFieldCannotHoldKeepsTheFieldAndIsNotWritten) {
    ListFixture f(lists(), catalogues());
    f.ui->refresh();
    show(f, "L002");
    QWindow* window = f.window->windowHandle();
    ConfigField* date = f.configPane->txtConfig[PrixField::DateEff];
    const QVariant storedDate = f.rsPrixList.value(PrixField::DateEff);
    for (const auto& [text, key] :
         {std::pair{"2026.13.01", Qt::Key_Tab}, std::pair{"2026.11.5", Qt::Key_Return}}) {
        date->setFocus();
        date->selectAll();
        QTest::keyClicks(date, text);
        {
            ScriptedPrompter prompts;
            prompts.expectMessage(LoadText(146), Buttons::Ok, Icon::Warning, QString(), Answer::Ok);
            QTest::keyClick(window, key);
        }
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
    const QPoint other = tree.viewport()->mapTo(f.window.get(), onText(tree, tree.node("L000")));
    {
        ScriptedPrompter prompts;
        prompts.expectMessage(LoadText(147), Buttons::Ok, Icon::Warning, QString(), Answer::Ok);
        QTest::mouseClick(window, Qt::LeftButton, {}, other);
    }
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
    f.rsPrixList.cancelUpdate();
    f.state.ConfigDirty = Dirty::None;
}

// The list's four codes and its third percentage have boxes of their own, bound to their fields.
TEST(Config, TheCodesAndTheThirdPercentageAreShownAndEdited) {
    ListFixture f(lists(), catalogues());
    f.ui->refresh();
    show(f, "L002");
    for (int field : {PrixField::CodeNvc, PrixField::CodeUni, PrixField::CodeAck,
                      PrixField::CodeUap, PrixField::Pct3}) {
        ConfigField* box = f.configPane->txtConfig[field];
        ASSERT_NE(box, nullptr) << field;
        EXPECT_TRUE(box->isVisibleTo(f.window.get())) << field;
        EXPECT_FALSE(f.configPane->lblConfig[field]->text().isEmpty()) << field;
        box->setFocus();
        QTest::keyClicks(box, "1a2");
        QTest::keyClick(f.window->windowHandle(), Qt::Key_Tab);
        EXPECT_EQ(f.rsPrixList.value(field).toString(), "12") << field;
    }
    EXPECT_EQ(f.state.ConfigDirty, Dirty::Pane);
    f.rsPrixList.cancelUpdate();
    f.state.ConfigDirty = Dirty::None;
}
