#include "mainwindow/splitterbars.h"

#include <QMouseEvent>
#include <QPainter>
#include <QWidget>
#include <algorithm>
#include <cmath>
#include <utility>

namespace {

const double KeyStepTwips = 120;

// A bar between two panes: a grip of dots in its middle, drawn darker while it is dragged.
class SplitterHandle : public QWidget {
public:
    SplitterHandle(Qt::Orientation along, QWidget* parent) : QWidget(parent), along_(along) {
        setCursor(along == Qt::Vertical ? Qt::SplitHCursor : Qt::SplitVCursor);
        setAttribute(Qt::WA_OpaquePaintEvent);
    }
    void setDragged(bool dragged) {
        dragged_ = dragged;
        update();
    }

protected:
    void paintEvent(QPaintEvent*) override {
        QPainter p(this);
        p.fillRect(rect(), palette().color(dragged_ ? QPalette::Mid : QPalette::Window));
        p.setRenderHint(QPainter::Antialiasing);
        p.setPen(Qt::NoPen);
        p.setBrush(palette().color(QPalette::Dark));
        const double dot = std::max(2.0, std::min(width(), height()) / 3.0);
        const QPointF middle = QRectF(rect()).center();
        const QPointF step = along_ == Qt::Vertical ? QPointF(0, dot * 2) : QPointF(dot * 2, 0);
        for (int i = -2; i <= 2; ++i)
            p.drawEllipse(middle + step * i, dot / 2, dot / 2);
    }

private:
    Qt::Orientation along_;
    bool dragged_ = false;
};

QRect pixelRect(const TwipRect& r, double dpi) {
    const int left = TwipsToPixels(r.left, dpi);
    const int top = TwipsToPixels(r.top, dpi);
    return {left, top, std::max(0, TwipsToPixels(r.right(), dpi) - left),
            std::max(0, TwipsToPixels(r.bottom(), dpi) - top)};
}

double leadingEdge(const TwipRect& bar, int index) {
    return index == VerticalBar ? bar.left : bar.top;
}

} // namespace

SplitterBars::SplitterBars(QWidget* area, const std::array<QWidget*, 3>& panes,
                           std::function<double()> dotsPerInch, QObject* parent)
    : QObject(parent), area_(area), panes_(panes), dotsPerInch_(std::move(dotsPerInch)) {
    for (int i = 0; i < 2; ++i) {
        picSplitter[i] = new SplitterHandle(i == VerticalBar ? Qt::Vertical : Qt::Horizontal, area);
        picSplitter[i]->setObjectName(QStringLiteral("picSplitter%1").arg(i));
        picSplitter[i]->installEventFilter(this);
    }
}

bool SplitterBars::dragging() const {
    return LastMouseDownX != NoPress || LastMouseDownY != NoPress;
}

void SplitterBars::forgetPress() {
    LastMouseDownX = LastMouseDownY = NoPress;
}

void SplitterBars::MouseDown(int index, Qt::MouseButton button, double x, double y) {
    if (button != Qt::LeftButton) {
        // Another button ends the drag as a release does.
        if (dragging())
            MouseUp(draggedBar_);
        return;
    }
    LastMouseDownX = int(std::lround(x));
    LastMouseDownY = int(std::lround(y));
    draggedBar_ = index;
    dragEdge_ = leadingEdge(placement_.splitter[index], index);
    static_cast<SplitterHandle*>(picSplitter[index])->setDragged(true);
    picSplitter[index]->raise();
}

// The bar's edge follows the pointer: it moves by the pointer's offset from it. No limit
// applies until the bar is dropped.
void SplitterBars::MouseMove(int index, Qt::MouseButtons buttons, double x, double y) {
    if (buttons == Qt::NoButton || !dragging() || index != draggedBar_)
        return;
    const int along = int(std::lround(index == VerticalBar ? x : y));
    int& recorded = index == VerticalBar ? LastMouseDownX : LastMouseDownY;
    if (along == recorded)
        return;
    dragEdge_ += along;
    recorded = along;
    showBarAt(index, dragEdge_);
}

void SplitterBars::MouseUp(int index) {
    if (!dragging() || index != draggedBar_)
        return;
    forgetPress();
    static_cast<SplitterHandle*>(picSplitter[index])->setDragged(false);
    DropSplitter(placement_, SplitterBar(index), dragEdge_);
    movedTo_ = FractionsOf(LayoutOf(placement_));
    showPlacement();
}

bool SplitterBars::moveByKey(int key) {
    QPointF step;
    switch (key) {
    case Qt::Key_Left:
        step = {-KeyStepTwips, 0};
        break;
    case Qt::Key_Right:
        step = {KeyStepTwips, 0};
        break;
    case Qt::Key_Up:
        step = {0, -KeyStepTwips};
        break;
    case Qt::Key_Down:
        step = {0, KeyStepTwips};
        break;
    default:
        return false;
    }
    const int index = step.x() != 0 ? VerticalBar : HorizontalBar;
    MouseDown(index, Qt::LeftButton, 0, 0);
    MouseMove(index, Qt::LeftButton, step.x(), step.y());
    MouseUp(index);
    return true;
}

void SplitterBars::fit(const LayoutFractions& initial) {
    const double dpi = dotsPerInch_();
    const LayoutFractions fractions = movedTo_.value_or(initial);
    placement_ = PlacePanes(PixelsToTwips(area_->width(), dpi), PixelsToTwips(area_->height(), dpi),
                            fractions.width, fractions.height);
    showPlacement();
}

PaneLayout SplitterBars::currentLayout() const {
    return LayoutOf(placement_);
}

void SplitterBars::showPlacement() {
    const double dpi = dotsPerInch_();
    for (int i = 0; i < 3; ++i)
        panes_[i]->setGeometry(pixelRect(placement_.pane[i], dpi));
    for (int i = 0; i < 2; ++i) {
        picSplitter[i]->setGeometry(pixelRect(placement_.splitter[i], dpi));
        picSplitter[i]->raise();
    }
}

void SplitterBars::showBarAt(int index, double edge) {
    TwipRect bar = placement_.splitter[index];
    (index == VerticalBar ? bar.left : bar.top) = edge;
    picSplitter[index]->setGeometry(pixelRect(bar, dotsPerInch_()));
}

QPointF SplitterBars::relativeTwips(int index, QPointF pointerInBar) const {
    const double dpi = dotsPerInch_();
    const QPointF inArea = pointerInBar + picSplitter[index]->pos();
    TwipRect bar = placement_.splitter[index];
    if (dragging() && index == draggedBar_)
        (index == VerticalBar ? bar.left : bar.top) = dragEdge_;
    return {PixelsToTwips(1, dpi) * inArea.x() - bar.left,
            PixelsToTwips(1, dpi) * inArea.y() - bar.top};
}

bool SplitterBars::eventFilter(QObject* watched, QEvent* event) {
    const int index = watched == picSplitter[0] ? 0 : watched == picSplitter[1] ? 1 : -1;
    const QEvent::Type type = event->type();
    if (index < 0 || (type != QEvent::MouseButtonPress && type != QEvent::MouseMove &&
                      type != QEvent::MouseButtonRelease))
        return QObject::eventFilter(watched, event);
    const auto* mouse = static_cast<QMouseEvent*>(event);
    const QPointF at = relativeTwips(index, mouse->position());
    if (type == QEvent::MouseButtonPress)
        MouseDown(index, mouse->button(), at.x(), at.y());
    else if (type == QEvent::MouseMove)
        MouseMove(index, mouse->buttons(), at.x(), at.y());
    else
        MouseUp(index);
    return true;
}
