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
