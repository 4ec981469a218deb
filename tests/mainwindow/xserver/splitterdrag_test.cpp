// The splitter bars dragged with the X server's own pointer. There the bar holds the pointer
// from the press to the release, whatever it crosses, and the moves arrive with the buttons
// held: the drop must land where the pointer left the bar, within the bar's limits, even when
// the pointer ends outside the window. These run on the xcb platform with the pointer driven by
// xdotool, once at the usual scale and once at twice the scale.
#include "app/panelayout.h"
#include "mainwindow/splitterbars.h"

#include <QApplication>
#include <QProcess>
#include <QTest>
#include <QWidget>
#include <gtest/gtest.h>
#include <memory>

namespace {

// Runs xdotool's commands on the X server's pointer.
void xdotool(const QStringList& commands) {
    QProcess process;
    process.start(QStringLiteral("xdotool"), commands);
    ASSERT_TRUE(process.waitForFinished(10000)) << "xdotool is needed: see scripts/setup-deps";
    ASSERT_EQ(process.exitCode(), 0) << process.readAllStandardError().toStdString();
}

QStringList at(QPoint screenPixel) {
    return {QStringLiteral("mousemove"), QString::number(screenPixel.x()),
            QString::number(screenPixel.y()), QStringLiteral("sleep"), QStringLiteral("0.1")};
}

struct WindowWithPanes : ::testing::Test {
    QWidget area;
    std::array<QWidget*, 3> pane{};
    std::unique_ptr<SplitterBars> bars;

    void SetUp() override {
        ASSERT_EQ(QGuiApplication::platformName(), QStringLiteral("xcb"));
        for (QWidget*& p : pane)
            p = new QWidget(&area);
        bars = std::make_unique<SplitterBars>(&area, pane,
                                              [this] { return double(area.logicalDpiX()); });
        area.setGeometry(20, 20, 560, 340);
        area.show();
        ASSERT_TRUE(QTest::qWaitForWindowExposed(&area));
        bars->fit({0.56, 0.37});
    }
    // A point of the window on the X server's screen, in the screen's own pixels.
    QPoint onScreen(QWidget* widget, QPoint local) const {
        return widget->mapToGlobal(local) * widget->devicePixelRatioF();
    }
    double edge(int bar) const {
        const TwipRect& r = bars->placement().splitter[bar];
        return bar == VerticalBar ? r.left : r.top;
    }
    // The point of the window under a point of the screen, in twips.
    QPointF twipsAt(QPoint screenPixel) const {
        const QPoint local = area.mapFromGlobal(screenPixel / area.devicePixelRatioF());
        return QPointF(local) * PixelsToTwips(1, area.logicalDpiX());
    }
    // Presses the left button on the middle of a bar, runs `moves` and releases it; waits for
    // the drop.
    void drag(int bar, const QStringList& moves) {
        QWidget* handle = bars->picSplitter[bar];
        xdotool(at(onScreen(handle, handle->rect().center()))
                << QStringLiteral("mousedown") << QStringLiteral("1") << moves
                << QStringLiteral("mouseup") << QStringLiteral("1"));
        QTest::qWait(200);
        EXPECT_TRUE(QTest::qWaitFor([&] { return bars->LastMouseDownX == SplitterBars::NoPress; }));
    }
};

} // namespace

// Dropped within the window, the bar lands where the pointer is and the panes follow it; dragged
// out of the window, it stops at its limit.
TEST_F(WindowWithPanes, ABarLandsWhereThePointerLeftItWithinItsLimits) {
    const QPoint middle = onScreen(&area, area.rect().center());
    const QPoint target = middle + QPoint(0, int(60 * area.devicePixelRatioF()));
    drag(HorizontalBar, at(target - QPoint(0, 20)) + at(target));
    EXPECT_NEAR(edge(HorizontalBar), twipsAt(target).y(), PixelsToTwips(1, area.logicalDpiX()));
    EXPECT_EQ(pane[2]->y(), TwipsToPixels(edge(HorizontalBar) + 90, area.logicalDpiX()));

    const int left = onScreen(&area, {0, 0}).x();
    drag(VerticalBar,
         at({middle.x() - 40, middle.y()}) + at({left - 15, middle.y()}) + at({2, middle.y()}));
    EXPECT_DOUBLE_EQ(edge(VerticalBar), 365);
}

// The right button pressed during a drag drops the bar where the pointer is; the buttons coming
// up afterwards, and the pointer moving on, leave it there.
TEST_F(WindowWithPanes, AnotherButtonDropsTheBarWhereThePointerIs) {
    QWidget* handle = bars->picSplitter[VerticalBar];
    const QPoint start = onScreen(handle, handle->rect().center());
    const QPoint target = start - QPoint(int(100 * area.devicePixelRatioF()), 0);
    drag(VerticalBar, at(start - QPoint(30, 0)) + at(target) +
                          QStringList{"mousedown", "3", "sleep", "0.1"} +
                          at(target - QPoint(60, 0)) + QStringList{"mouseup", "3"});
    EXPECT_NEAR(edge(VerticalBar), twipsAt(target).x(), PixelsToTwips(1, area.logicalDpiX()));
}
