#pragma once

#include "app/panelayout.h"

#include <QObject>
#include <QPointF>
#include <array>
#include <functional>
#include <optional>

class QWidget;

// The two bars between the main window's panes and their drag. The vertical bar picSplitter 0
// moves along the width between the list trees and the catalogue trees; the horizontal bar
// picSplitter 1 moves along the height above the information tabs. While the dealer drags, only
// the bar moves; when it is dropped it is brought within its limits and the panes follow it.
// Positions are kept in twips and shown at the screen's logical resolution, so the same layout
// comes back at any scale.
class SplitterBars : public QObject {
    Q_OBJECT
public:
    // The panes picForm 0 to 2 and the bars live in `area`; `dotsPerInch` tells the screen's
    // logical resolution at the time of asking.
    SplitterBars(QWidget* area, const std::array<QWidget*, 3>& panes,
                 std::function<double()> dotsPerInch, QObject* parent = nullptr);

    std::array<QWidget*, 2> picSplitter{};

    // The last left-button press on a bar, in whole twips relative to the bar; NoPress each
    // while no drag is under way.
    static constexpr int NoPress = 2147483647;
    int LastMouseDownX = NoPress;
    int LastMouseDownY = NoPress;

    // The drag as the bars' mouse events run it, coordinates in twips relative to the bar.
    void MouseDown(int index, Qt::MouseButton button, double x, double y);
    void MouseMove(int index, Qt::MouseButtons buttons, double x, double y);
    void MouseUp(int index);
    void forgetPress();
    // Alt+Shift+arrow: the bar of that direction moves 120 twips through the same three steps.
    // False for any other key.
    bool moveByKey(int key);

    // Places the panes in the area: where the dealer left the bars, or at `initial` (the stored
    // fractions) as long as no bar was moved.
    void fit(const LayoutFractions& initial);
    // The panes as they stand now, in twips.
    PaneLayout currentLayout() const;
    const PanePlacement& placement() const { return placement_; }

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    bool dragging() const;
    // The pointer in twips relative to a bar as it stands during the drag.
    QPointF relativeTwips(int index, QPointF pointerInBar) const;
    void showPlacement();
    void showBarAt(int index, double edge);

    QWidget* area_;
    std::array<QWidget*, 3> panes_;
    std::function<double()> dotsPerInch_;
    PanePlacement placement_;
    // The bar being dragged and its leading edge as it moves.
    int draggedBar_ = VerticalBar;
    double dragEdge_ = 0;
    std::optional<LayoutFractions> movedTo_; // set once the dealer has moved a bar
};
