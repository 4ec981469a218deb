// Keys typed on a real X server reach the line count field as a dealer types them. There every
// key event carries the text the key makes (a tab for Tab, DEL for Delete), which synthetic key
// events on the offscreen platform do not, so these run on the xcb platform with keys sent
// through the X server by xdotool.
#include "partsfile/partsearchpane.h"

#include <QGuiApplication>
#include <QLineEdit>
#include <QListWidget>
#include <QProcess>
#include <QTest>
#include <gtest/gtest.h>

namespace {

// Presses keys (X key names) on the X server's keyboard, as the dealer's keyboard does.
void pressKeys(const QStringList& keys) {
    QProcess xdotool;
    xdotool.start(QStringLiteral("xdotool"), QStringList{"key", "--delay", "30"} + keys);
    ASSERT_TRUE(xdotool.waitForFinished(10000)) << "xdotool is needed: see scripts/setup-deps";
    ASSERT_EQ(xdotool.exitCode(), 0) << xdotool.readAllStandardError().toStdString();
}

TEST(LineCountOnAnXServer, KeysThatTypeNothingWorkAsUsual) {
    ASSERT_EQ(QGuiApplication::platformName(), QStringLiteral("xcb"));
    PartSearchPane pane;
    pane.show();
    pane.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&pane));
    pane.txtMax->setFocus();
    pane.txtMax->setText(QStringLiteral("120"));
    ASSERT_TRUE(QTest::qWaitFor([&] { return pane.txtMax->hasFocus(); }));

    // Delete and backspace edit, arrows and Home/End move, a letter is dropped, Tab leaves.
    pressKeys({"Home", "Delete", "End", "BackSpace", "a", "5", "Left", "period", "Tab"});
    EXPECT_TRUE(QTest::qWaitFor([&] { return pane.lstPieces->hasFocus(); }, 5000))
        << "Tab did not leave the field";
    EXPECT_EQ(pane.txtMax->text().toStdString(), "2.5");
}

} // namespace
