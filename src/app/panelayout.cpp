#include "app/panelayout.h"

#include <algorithm>
#include <cmath>

namespace {
const double SplitterThickness = 85;
} // namespace

PanePlacement PlacePanes(double innerWidth, double innerHeight, double widthFraction,
                         double heightFraction) {
    PanePlacement p;
    const double splitX = widthFraction * innerWidth;
    const double splitY = heightFraction * innerHeight;
    p.pane[0] = {0, 0, splitX - SplitterRoom, splitY - SplitterRoom};
    p.pane[1] = {splitX + SplitterRoom, 0, innerWidth - (splitX + SplitterRoom), p.pane[0].height};
    p.pane[2] = {0, splitY + SplitterRoom, innerWidth, innerHeight - (splitY + SplitterRoom)};
    p.innerWidth = innerWidth;
    p.innerHeight = innerHeight;
    PlaceSplitters(p, innerWidth);
    return p;
}

std::optional<LayoutFractions> FractionsOf(const PaneLayout& layout) {
    if (layout.innerWidth <= 0 || layout.innerHeight <= 0)
        return std::nullopt;
    return LayoutFractions{(layout.firstPaneWidth + SplitterRoom) / layout.innerWidth,
                           (layout.thirdPaneTop - SplitterRoom) / layout.innerHeight};
}

PaneLayout LayoutOf(const PanePlacement& p) {
    return {p.pane[0].width, p.pane[2].top, p.innerWidth, p.innerHeight};
}

double SplitterEdgeWithinLimits(const PanePlacement& p, SplitterBar bar, double edge) {
    // In a window too small for both limits, the far pane keeps its room.
    if (bar == VerticalBar)
        return std::min(std::max(edge, MinVerticalBarLeft), p.innerWidth - RightPaneRoom);
    return std::min(std::max(edge, MinHorizontalBarTop), p.innerHeight - BottomPaneRoom);
}

void DropSplitter(PanePlacement& p, SplitterBar bar, double edge) {
    if (bar == VerticalBar) {
        const double moved = SplitterEdgeWithinLimits(p, bar, edge) - p.splitter[bar].left;
        p.pane[0].width += moved;
        p.pane[1].left += moved;
        p.pane[1].width -= moved;
    } else {
        const double moved = SplitterEdgeWithinLimits(p, bar, edge) - p.splitter[bar].top;
        p.pane[0].height += moved;
        p.pane[1].height += moved;
        p.pane[2].top += moved;
        p.pane[2].height -= moved;
    }
    PlaceSplitters(p, p.innerWidth);
}

void PlaceSplitters(PanePlacement& p, double innerWidth) {
    p.splitter[0] = {p.pane[1].left - SplitterThickness, 0, SplitterThickness, p.pane[2].top - 80};
    p.splitter[1] = {0, p.pane[2].top - 90, innerWidth, SplitterThickness};
}

int TwipsToPixels(double twips, double dotsPerInch) {
    return int(std::lround(twips * dotsPerInch / TwipsPerInch));
}

double PixelsToTwips(int pixels, double dotsPerInch) {
    return pixels * TwipsPerInch / dotsPerInch;
}
