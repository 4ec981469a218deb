// The splitter bars on their own: dropped at and beyond their limits, the panes following them,
// and a layout saved at one screen resolution put back at the other.
#include "app/appstate.h"
#include "app/panelayout.h"
#include "app/settings.h"
#include "mainwindow/splitterbars.h"

#include "tempinstall.h"

#include <QWidget>
#include <gtest/gtest.h>
#include <memory>

namespace {

// Three panes and the two bars in a window `size` pixels large, on a screen of `dpi` dots per
// inch, laid out at the usual fractions.
struct Panes {
    QWidget area;
    std::array<QWidget*, 3> pane{};
    std::unique_ptr<SplitterBars> bars;

    Panes(double dpi, QSize size) {
        for (QWidget*& p : pane)
            p = new QWidget(&area);
        bars = std::make_unique<SplitterBars>(&area, pane, [dpi] { return dpi; });
        area.resize(size);
        bars->fit({0.56, 0.37});
    }
    const PanePlacement& placed() const { return bars->placement(); }
    double edge(int bar) const {
        return bar == VerticalBar ? placed().splitter[bar].left : placed().splitter[bar].top;
    }
    // Presses on the bar, moves its edge to `to` twips and drops it there unless `hold`.
    void drag(int bar, double to, bool hold = false) {
        bars->MouseDown(bar, Qt::LeftButton, 40, 40);
        const double by = to - edge(bar);
        bars->MouseMove(bar, Qt::LeftButton, bar == VerticalBar ? by : 40,
                        bar == VerticalBar ? 40 : by);
        if (!hold)
            bars->MouseUp(bar);
    }
};

// The panes fill the window with the bars' room between them, and stand where the twips say.
void expectPanesAroundTheBars(const Panes& panes, double dpi) {
    const PanePlacement& p = panes.placed();
    EXPECT_DOUBLE_EQ(p.pane[1].left - p.pane[0].right(), 2 * SplitterRoom);
    EXPECT_DOUBLE_EQ(p.pane[2].top - p.pane[0].bottom(), 2 * SplitterRoom);
    EXPECT_DOUBLE_EQ(p.pane[1].bottom(), p.pane[0].bottom());
    EXPECT_DOUBLE_EQ(p.pane[1].right(), p.innerWidth);
    EXPECT_DOUBLE_EQ(p.pane[2].bottom(), p.innerHeight);
    EXPECT_DOUBLE_EQ(p.splitter[VerticalBar].left, p.pane[1].left - 85);
    EXPECT_DOUBLE_EQ(p.splitter[HorizontalBar].top, p.pane[2].top - 90);
    EXPECT_EQ(panes.pane[1]->x(), TwipsToPixels(p.pane[1].left, dpi));
    EXPECT_EQ(panes.pane[2]->y(), TwipsToPixels(p.pane[2].top, dpi));
    EXPECT_EQ(
        panes.pane[0]->geometry().bottomRight() + QPoint(1, 1),
        QPoint(TwipsToPixels(p.pane[0].right(), dpi), TwipsToPixels(p.pane[0].bottom(), dpi)));
    EXPECT_EQ(panes.bars->picSplitter[0]->x(), TwipsToPixels(p.splitter[0].left, dpi));
    EXPECT_EQ(panes.bars->picSplitter[1]->y(), TwipsToPixels(p.splitter[1].top, dpi));
}

} // namespace

TEST(SplitterDrops, ABarDroppedBeyondItsLimitsStopsThereAndThePanesFollowItAndTheWindow) {
    Panes panes(96, {960, 600}); // 14400 x 9000 twips
    const double width = 14400, height = 9000;

    // Each bar dropped beyond either limit, then within them; the other bar stays put.
    const struct {
        int bar;
        double droppedAt, stopsAt;
    } drops[] = {{VerticalBar, 100, 365},
                 {VerticalBar, width - 300, width - 600},
                 {VerticalBar, 5000, 5000},
                 {HorizontalBar, 1000, 2050},
                 {HorizontalBar, height - 500, height - 1000}};
    for (const auto& drop : drops) {
        SCOPED_TRACE(drop.droppedAt);
        const double other = panes.edge(1 - drop.bar);
        panes.drag(drop.bar, drop.droppedAt);
        EXPECT_DOUBLE_EQ(panes.edge(drop.bar), drop.stopsAt);
        EXPECT_DOUBLE_EQ(panes.edge(1 - drop.bar), other);
        expectPanesAroundTheBars(panes, 96);
    }

    // While the bar moves no limit applies and the panes wait for the drop.
    const QRect before = panes.pane[0]->geometry();
    panes.drag(VerticalBar, 100, true);
    EXPECT_EQ(panes.bars->picSplitter[0]->x(), TwipsToPixels(100, 96));
    EXPECT_EQ(panes.pane[0]->geometry(), before);
    panes.bars->MouseUp(VerticalBar);

    // The window resized: the panes keep the dealer's proportions, not the stored fractions.
    const LayoutFractions moved = *FractionsOf(panes.bars->currentLayout());
    panes.area.resize(1200, 750);
    panes.bars->fit({0.56, 0.37});
    const LayoutFractions resized = *FractionsOf(panes.bars->currentLayout());
    EXPECT_NEAR(resized.width, moved.width, 1e-9);
    EXPECT_NEAR(resized.height, moved.height, 1e-9);
    EXPECT_DOUBLE_EQ(panes.placed().innerWidth, 18000);
    expectPanesAroundTheBars(panes, 96);
}

// A layout saved on a screen at 96 dots per inch comes back the same on the same screen at
// 192 (twice the pixels), and the other way round.
TEST(SplitterDrops, TheLayoutSavedAtOneResolutionComesBackAtTheOther) {
    TempInstall install;
    const CRegSettings store(install.settingsFile());
    AppState state;
    state.RegistryKeyPath = RegistryKeyPathText;
    state.Settings.Format = 1;
    for (const auto& [savedAt, restoredAt] : {std::pair{96.0, 192.0}, {192.0, 96.0}}) {
        const auto pixels = [](double dpi) { return QSize(960, 600) * (dpi / 96); };
        Panes before(savedAt, pixels(savedAt));
        before.drag(VerticalBar, 6123);
        before.drag(HorizontalBar, 4321);
        SaveSettings(store, state, before.bars->currentLayout());

        AppSettings next;
        AssignStoredSettings(next, store.EnumValues(RegistryKeyPathText));
        Panes after(restoredAt, pixels(restoredAt));
        after.bars->fit({next.Width, next.Height});
        EXPECT_NEAR(after.edge(VerticalBar), 6123, 1);
        EXPECT_NEAR(after.edge(HorizontalBar), 4321, 1);
        expectPanesAroundTheBars(after, restoredAt);
    }
}
