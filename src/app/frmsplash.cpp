#include "app/frmsplash.h"

#include "app/appstate.h"
#include "app/messages.h"
#include "app/version.h"

#include <QApplication>
#include <QLabel>
#include <QLinearGradient>
#include <QPainter>
#include <QPainterPath>
#include <QScreen>

namespace {

const QSize PictureSize(480, 300);

// A stylised price tag: the dealer's lists are what the program keeps.
void drawPriceTag(QPainter& p, const QRectF& box, const QColor& colour) {
    QPainterPath tag;
    const qreal notch = box.height() / 2;
    tag.moveTo(box.left() + notch, box.top());
    tag.lineTo(box.right(), box.top());
    tag.lineTo(box.right(), box.bottom());
    tag.lineTo(box.left() + notch, box.bottom());
    tag.lineTo(box.left(), box.center().y());
    tag.closeSubpath();
    p.setPen(QPen(QColor(255, 255, 255, 200), 3));
    p.setBrush(colour);
    p.drawPath(tag);
    p.setBrush(Qt::white);
    p.drawEllipse(QPointF(box.left() + notch * 0.9, box.center().y()), notch * 0.22, notch * 0.22);
}

void drawGear(QPainter& p, const QPointF& centre, qreal radius, const QColor& colour) {
    QPainterPath gear;
    const int teeth = 10;
    for (int i = 0; i < teeth * 2; ++i) {
        const qreal angle = i * M_PI / teeth;
        const qreal r = (i % 2 == 0) ? radius : radius * 0.8;
        const QPointF point(centre.x() + r * std::cos(angle), centre.y() + r * std::sin(angle));
        i == 0 ? gear.moveTo(point) : gear.lineTo(point);
    }
    gear.closeSubpath();
    QPainterPath hole;
    hole.addEllipse(centre, radius * 0.35, radius * 0.35);
    p.setPen(Qt::NoPen);
    p.setBrush(colour);
    p.drawPath(gear.subtracted(hole));
}

} // namespace

QPixmap SplashPicture(int nation) {
    const bool french = nation == 1000;
    QPixmap picture(PictureSize);
    QPainter p(&picture);
    p.setRenderHint(QPainter::Antialiasing);
    QLinearGradient sky(0, 0, 0, PictureSize.height());
    sky.setColorAt(0, QColor(0, 107, 153));
    sky.setColorAt(1, QColor(0, 45, 72));
    p.fillRect(picture.rect(), sky);
    drawGear(p, QPointF(390, 95), 70, QColor(255, 255, 255, 40));
    drawGear(p, QPointF(300, 175), 42, QColor(255, 255, 255, 30));
    drawPriceTag(p, QRectF(36, 48, 250, 64), QColor(230, 126, 34));

    QFont tagFont(QStringLiteral("DejaVu Sans"), 16, QFont::Bold);
    p.setFont(tagFont);
    p.setPen(Qt::white);
    p.drawText(QRectF(94, 48, 186, 64), Qt::AlignCenter,
               french ? QStringLiteral("Listes de prix") : QStringLiteral("Price lists"));

    QFont name(QStringLiteral("DejaVu Serif"), 40, QFont::Bold);
    p.setFont(name);
    p.drawText(QRectF(36, 130, 420, 70), Qt::AlignLeft | Qt::AlignVCenter,
               french ? QStringLiteral("Mercantel") : QStringLiteral("Tallyrate"));
    QFont motto(QStringLiteral("DejaVu Sans"), 12);
    p.setFont(motto);
    p.setPen(QColor(200, 230, 245));
    p.drawText(QRectF(38, 200, 420, 30), Qt::AlignLeft | Qt::AlignVCenter,
               french ? QStringLiteral("Listes, catalogues et pièces à jour, au comptoir")
                      : QStringLiteral("Lists, catalogues and parts up to date at the counter"));
    p.fillRect(QRectF(36, 236, 120, 4), QColor(230, 126, 34));
    return picture;
}

frmSplash::frmSplash(QWidget* parent)
    : QWidget(parent, Qt::SplashScreen | Qt::FramelessWindowHint), Picture1(new QLabel(this)),
      Label1(new QLabel(this)), Label2(new QLabel(this)) {
    const int nation = App().Settings.Nation;
    Picture1->setPixmap(SplashPicture(nation));
    Picture1->setGeometry(QRect(QPoint(0, 0), PictureSize));
    setFixedSize(PictureSize);

    const QString title = VersionedTitle();
    QApplication::setApplicationName(title);
    setWindowTitle(LoadText(0));
    // The maker's name above the title (a label breaks its line on a line feed).
    Label2->setText(CompanyName() + u'\n' + title);
    Label1->setText(LoadText(73));
    for (QLabel* label : {Label1, Label2}) {
        label->setStyleSheet(QStringLiteral("color: white; background: transparent;"));
    }
    Label2->setGeometry(38, 248, 420, 36);
    Label1->setGeometry(300, 272, 170, 20);
    Label1->setAlignment(Qt::AlignRight | Qt::AlignVCenter);

    if (const QScreen* screen = QApplication::primaryScreen())
        move(screen->availableGeometry().center() - rect().center());
}
