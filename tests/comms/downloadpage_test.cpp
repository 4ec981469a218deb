// The update boxes of the Download tab: one choice at a time, and the list filter box that
// follows box 2.
#include "comms/downloadpage.h"

#include <QApplication>
#include <QCheckBox>
#include <QLineEdit>
#include <QTest>
#include <gtest/gtest.h>

// The release hands the focus back to the list tree, then the click may give it to the filter
// box: the box still ticks, and box 2's filter box keeps the focus for the dealer's text.
TEST(DownloadPage, OneChoiceAtATimeTickedWhenItsReleaseMovesTheFocusAway) {
    QWidget window;
    auto* page = new DownloadPage(&window);
    auto* listTree = new QLineEdit(&window);
    QObject::connect(page, &DownloadPage::choiceMouseUp, listTree,
                     [listTree] { listTree->setFocus(); });
    window.show();
    QApplication::setActiveWindow(&window);
    ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
    // The boxes that can be clicked, then "+" when the filter box can be written in.
    const auto enabled = [page]() -> QString {
        QString flags;
        for (QCheckBox* box : page->chkMAJ)
            flags += box->isEnabled() ? u'1' : u'0';
        return flags + (page->txtExpList->isEnabled() ? u'+' : u'-');
    };

    // A real click gives the box the focus on the press.
    page->chkMAJ[0]->setFocus();
    QTest::mouseClick(page->chkMAJ[0], Qt::LeftButton);
    EXPECT_TRUE(page->chkMAJ[0]->isChecked());
    EXPECT_TRUE(listTree->hasFocus());
    EXPECT_EQ(enabled(), "100000-") << "only box 2 opens the filter box";
    QTest::mouseClick(page->chkMAJ[0], Qt::LeftButton);
    EXPECT_EQ(enabled(), "111111-");

    page->chkMAJ[2]->setFocus();
    QTest::mouseClick(page->chkMAJ[2], Qt::LeftButton);
    EXPECT_TRUE(page->chkMAJ[2]->isChecked());
    EXPECT_TRUE(page->txtExpList->hasFocus());
    EXPECT_EQ(enabled(), "001000+");
    QTest::mouseClick(page->chkMAJ[2], Qt::LeftButton);
    EXPECT_EQ(enabled(), "111111-");
}
