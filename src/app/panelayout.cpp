#include "app/panelayout.h"

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
    PlaceSplitters(p, innerWidth);
    return p;
}

std::optional<LayoutFractions> FractionsOf(const PaneLayout& layout) {
    if (layout.innerWidth <= 0 || layout.innerHeight <= 0)
        return std::nullopt;
    return LayoutFractions{(layout.firstPaneWidth + SplitterRoom) / layout.innerWidth,
                           (layout.thirdPaneTop - SplitterRoom) / layout.innerHeight};
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
