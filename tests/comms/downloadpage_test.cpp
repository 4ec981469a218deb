// The update boxes of the Download tab: one choice at a time, and the list filter box that
// follows box 2.
#include "comms/downloadpage.h"

#include <QCheckBox>
#include <QLineEdit>
#include <QTest>
#include <gtest/gtest.h>

TEST(DownloadPage, OneChoiceAtATimeAndTheFilterBoxFollowsBoxTwo) {
    DownloadPage page;
    page.show();
    QTest::mouseClick(page.chkMAJ[2], Qt::LeftButton);
    EXPECT_TRUE(page.chkMAJ[2]->isChecked());
    for (int i = 0; i < 6; ++i)
        EXPECT_EQ(page.chkMAJ[i]->isEnabled(), i == 2) << "box " << i;
    EXPECT_TRUE(page.txtExpList->isEnabled());
    EXPECT_TRUE(page.txtExpList->styleSheet().contains(QStringLiteral("#FFFFFF")));

    QTest::mouseClick(page.chkMAJ[2], Qt::LeftButton);
    for (QCheckBox* box : page.chkMAJ)
        EXPECT_TRUE(box->isEnabled());
    EXPECT_FALSE(page.txtExpList->isEnabled());
    EXPECT_TRUE(page.txtExpList->styleSheet().contains(QStringLiteral("#C0C0C0")));

    QTest::mouseClick(page.chkMAJ[4], Qt::LeftButton);
    EXPECT_FALSE(page.chkMAJ[2]->isEnabled());
    EXPECT_FALSE(page.txtExpList->isEnabled()); // only box 2 opens the filter box
}
