#include "pricelists/imagelist.h"

#include <QPainter>
#include <QPainterPath>
#include <QPixmap>

namespace {

constexpr int Side = 32; // drawn large, scaled down by the view

const QColor Cover(36, 84, 150);
const QColor CoverEdge(20, 48, 92);
const QColor Paper(250, 248, 238);
const QColor PaperEdge(150, 140, 110);
const QColor Lines(170, 170, 170);

// A closed catalogue: a bound cover seen from the front, the page block showing at its edge.
QPixmap closedCatalogue() {
    QPixmap pixmap(Side, Side);
    pixmap.fill(Qt::transparent);
    QPainter p(&pixmap);
    p.setRenderHint(QPainter::Antialiasing);
    p.setPen(QPen(PaperEdge, 1));
    p.setBrush(Paper);
    p.drawRect(QRectF(9.5, 4.5, 19, 24)); // pages behind the cover
    p.setPen(QPen(CoverEdge, 1.5));
    p.setBrush(Cover);
    p.drawRoundedRect(QRectF(5.5, 2.5, 20, 25), 2, 2);
    p.setPen(QPen(CoverEdge.darker(120), 2));
    p.drawLine(QPointF(9, 3), QPointF(9, 27)); // spine
    p.setPen(Qt::NoPen);
    p.setBrush(Paper);
    p.drawRect(QRectF(12, 8, 10, 5)); // title plate
    return pixmap;
}

// An open catalogue: two pages spread from the spine, with lines of print.
QPixmap openCatalogue() {
    QPixmap pixmap(Side, Side);
    pixmap.fill(Qt::transparent);
    QPainter p(&pixmap);
    p.setRenderHint(QPainter::Antialiasing);
    p.setPen(QPen(CoverEdge, 1.5));
    p.setBrush(Cover);
    QPainterPath cover;
    cover.moveTo(1.5, 9);
    cover.lineTo(16, 12);
    cover.lineTo(30.5, 9);
    cover.lineTo(30.5, 27);
    cover.lineTo(16, 30);
    cover.lineTo(1.5, 27);
    cover.closeSubpath();
    p.drawPath(cover);
    for (int side : {-1, 1}) {
        p.setPen(QPen(PaperEdge, 1));
        p.setBrush(Paper);
        QPainterPath page;
        page.moveTo(16, 10);
        page.cubicTo(16 + side * 5, 6, 16 + side * 10, 6, 16 + side * 13, 7);
        page.lineTo(16 + side * 13, 25);
        page.cubicTo(16 + side * 10, 24, 16 + side * 5, 24, 16, 28);
        page.closeSubpath();
        p.drawPath(page);
        p.setPen(QPen(Lines, 1));
        for (int line = 0; line < 5; ++line) {
            const qreal y = 12 + line * 3;
            p.drawLine(QPointF(16 + side * 3, y), QPointF(16 + side * 11, y - 1));
        }
    }
    return pixmap;
}

} // namespace

QIcon ImageList::image(int number) {
    static const QIcon closed(closedCatalogue());
    static const QIcon open(openCatalogue());
    if (number == ClosedCatalogue)
        return closed;
    if (number == OpenCatalogue)
        return open;
    return {};
}
