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
    // Presses the left button on the middle of a bar, moves the pointer through `path` (screen
    // pixels) and releases it there; waits for the drop.
    void drag(int bar, const QList<QPoint>& path) {
        QWidget* handle = bars->picSplitter[bar];
        QStringList commands = at(onScreen(handle, handle->rect().center()));
        commands << QStringLiteral("mousedown") << QStringLiteral("1");
        for (const QPoint& point : path)
            commands << at(point);
        commands << QStringLiteral("mouseup") << QStringLiteral("1");
        xdotool(commands);
        waitForTheDrop();
    }
    void waitForTheDrop() {
        QTest::qWait(200);
        EXPECT_TRUE(QTest::qWaitFor([&] { return bars->LastMouseDownX == SplitterBars::NoPress; }));
    }
};

} // namespace

TEST_F(WindowWithPanes, ABarDraggedOutOfTheWindowStopsAtItsLimit) {
    const QPoint topLeft = onScreen(&area, {0, 0});
    const QPoint bottomRight = onScreen(&area, {area.width(), area.height()});
    const int middleY = (topLeft.y() + bottomRight.y()) / 2;
    const int middleX = (topLeft.x() + bottomRight.x()) / 2;

    drag(VerticalBar, {{middleX - 40, middleY}, {topLeft.x() - 15, middleY}, {2, middleY}});
    EXPECT_DOUBLE_EQ(edge(VerticalBar), 365);
    drag(HorizontalBar, {{middleX, middleY + 30}, {middleX, bottomRight.y() + 20}, {middleX, 795}});
    EXPECT_DOUBLE_EQ(edge(HorizontalBar), bars->placement().innerHeight - 1000);
    // The panes followed: the bottom pane starts below the bar.
    EXPECT_EQ(pane[2]->y(), TwipsToPixels(edge(HorizontalBar) + 90, area.logicalDpiX()));
}

// The right button pressed during a drag drops the bar where the pointer is; the buttons coming
// up afterwards, and the pointer moving on, leave it there.
TEST_F(WindowWithPanes, AnotherButtonDropsTheBarWhereThePointerIs) {
    QWidget* handle = bars->picSplitter[VerticalBar];
    const QPoint start = onScreen(handle, handle->rect().center());
    const QPoint target = start - QPoint(int(100 * area.devicePixelRatioF()), 0);
    QStringList commands = at(start);
    commands << QStringLiteral("mousedown") << QStringLiteral("1") << at(start - QPoint(30, 0))
             << at(target) << QStringLiteral("mousedown") << QStringLiteral("3")
             << QStringLiteral("sleep") << QStringLiteral("0.1") << at(target - QPoint(60, 0))
             << QStringLiteral("mouseup") << QStringLiteral("3") << QStringLiteral("mouseup")
             << QStringLiteral("1");
    xdotool(commands);
    waitForTheDrop();
    const double pointer =
        PixelsToTwips(handle->mapFromGlobal(target / area.devicePixelRatioF()).x() + handle->x(),
                      area.logicalDpiX());
    EXPECT_NEAR(edge(VerticalBar), pointer, PixelsToTwips(1, area.logicalDpiX()));
}
