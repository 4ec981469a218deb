#pragma once

#include <optional>

// The main window's three panes in twips: the vertical splitter at the Width fraction of the
// inner width, the horizontal one at the Height fraction of the inner height. Placing the
// panes from the fractions and taking the fractions back from the panes sit side by side here,
// so that a saved layout puts the panes back where the dealer left them.

inline constexpr double TwipsPerInch = 1440;
// The room each pane keeps beside a splitter.
inline constexpr double SplitterRoom = 40;

struct TwipRect {
    double left = 0;
    double top = 0;
    double width = 0;
    double height = 0;
    double right() const { return left + width; }
    double bottom() const { return top + height; }
    bool operator==(const TwipRect&) const = default;
};

struct PanePlacement {
    TwipRect pane[3];     // picForm 0 (top left), 1 (top right), 2 (bottom)
    TwipRect splitter[2]; // picSplitter 0 (vertical bar), 1 (horizontal bar)
    double innerWidth = 0;
    double innerHeight = 0;
};

PanePlacement PlacePanes(double innerWidth, double innerHeight, double widthFraction,
                         double heightFraction);

// The bars put back between the panes after a pane was resized.
void PlaceSplitters(PanePlacement& placement, double innerWidth);

// The panes as the user left them, for saving the layout.
struct PaneLayout {
    double firstPaneWidth = 0;
    double thirdPaneTop = 0;
    double innerWidth = 0;
    double innerHeight = 0;
};
PaneLayout LayoutOf(const PanePlacement& placement);

// The splitters: the vertical bar picSplitter 0 moves along the width, the horizontal bar
// picSplitter 1 along the height. A bar is dropped within limits that keep every pane usable.
enum SplitterBar { VerticalBar = 0, HorizontalBar = 1 };
inline constexpr double MinVerticalBarLeft = 365;
inline constexpr double RightPaneRoom = 600; // the vertical bar stays this far from the right
inline constexpr double MinHorizontalBarTop = 2050;
inline constexpr double BottomPaneRoom = 1000; // the horizontal bar stays this far from the bottom

// The leading edge (left of the vertical bar, top of the horizontal one) brought within the
// bar's limits.
double SplitterEdgeWithinLimits(const PanePlacement& placement, SplitterBar bar, double edge);
// Drops a bar with its leading edge at `edge`: the edge is brought within the limits and the
// panes on both sides follow the bar by the distance it moved.
void DropSplitter(PanePlacement& placement, SplitterBar bar, double edge);

struct LayoutFractions {
    double width = 0;
    double height = 0;
};

// The inverse of PlacePanes: the fractions that put the panes back where they stand. None for
// a window without size.
std::optional<LayoutFractions> FractionsOf(const PaneLayout& layout);

// Screen pixels and twips, through the screen's logical resolution.
int TwipsToPixels(double twips, double dotsPerInch);
double PixelsToTwips(int pixels, double dotsPerInch);
