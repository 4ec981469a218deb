#pragma once

// Where the three panes of the main window stand, in twips, from the stored fractions: the
// vertical splitter at Width of the inner width, the horizontal one at Height of the inner
// height, each pane keeping 40 twips of room beside a splitter.
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

// Screen pixels and twips, through the screen's logical resolution (1440 twips an inch).
int TwipsToPixels(double twips, double dotsPerInch);
double PixelsToTwips(int pixels, double dotsPerInch);
