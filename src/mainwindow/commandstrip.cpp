#include "mainwindow/commandstrip.h"

#include "app/messages.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QStyleOptionFocusRect>
#include <QStylePainter>

namespace {

const QSize ButtonSize(44, 36);
const int SlotWidth = 110;

// The place of each button on the strip, and of each caption.
const int ButtonSlot[7] = {0, 1, 2, 3, 1, 4, 4};
const int CaptionSlot[5] = {0, 1, 3, 2, 4};

QPixmap buttonPicture(const QString& glyph, const QColor& colour) {
    QPixmap picture(ButtonSize);
    picture.fill(Qt::transparent);
    QPainter p(&picture);
    p.setRenderHint(QPainter::Antialiasing);
    p.setPen(Qt::NoPen);
    p.setBrush(colour);
    p.drawRoundedRect(QRectF(4, 2, 36, 32), 6, 6);
    p.setPen(Qt::white);
    p.setFont(QFont(QStringLiteral("DejaVu Sans"), 15, QFont::Bold));
    p.drawText(QRectF(4, 2, 36, 32), Qt::AlignCenter, glyph);
    return picture;
}

} // namespace

MenuPicture::MenuPicture(int index, QWidget* parent) : QLabel(parent), index(index) {
    setFocusPolicy(Qt::TabFocus);
}

void MenuPicture::mousePressEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton)
        return;
    pressed_ = !onPress || onPress(index);
    if (pressed_)
        CommandStrip::setBorderStyle(this, 1);
}

void MenuPicture::mouseReleaseEvent(QMouseEvent* event) {
    if (event->button() == Qt::LeftButton && pressed_)
        release();
}

void MenuPicture::release() {
    pressed_ = false;
    CommandStrip::setBorderStyle(this, 0);
    if (onRelease)
        onRelease(index);
}

void MenuPicture::keyPressEvent(QKeyEvent* event) {
    const int key = event->key();
    if (key != Qt::Key_Space && key != Qt::Key_Return && key != Qt::Key_Enter) {
        QLabel::keyPressEvent(event);
        return;
    }
    pressed_ = !onPress || onPress(index);
    if (pressed_)
        release();
}

void MenuPicture::paintEvent(QPaintEvent* event) {
    QLabel::paintEvent(event);
    if (!hasFocus())
        return;
    QStylePainter painter(this);
    QStyleOptionFocusRect option;
    option.initFrom(this);
    option.rect = rect().adjusted(1, 1, -1, -1);
    painter.drawPrimitive(QStyle::PE_FrameFocusRect, option);
}

CommandStrip::CommandStrip(QWidget* parent) : QWidget(parent) {
    const QString glyphs[7] = {QStringLiteral("☑"), QStringLiteral("✔"), QStringLiteral("✎"),
                               QStringLiteral("⚙"), QStringLiteral("✖"), QStringLiteral("⇄"),
                               QStringLiteral("⇹")};
    const QColor colours[7] = {QColor(0, 107, 153), QColor(46, 139, 87), QColor(200, 120, 20),
                               QColor(90, 90, 110), QColor(178, 34, 34), QColor(0, 107, 153),
                               QColor(120, 70, 150)};
    for (int i = 0; i < 7; ++i) {
        picMenu[i] = new MenuPicture(i, this);
        picMenu[i]->setPixmap(buttonPicture(glyphs[i], colours[i]));
        picMenu[i]->setFixedSize(ButtonSize + QSize(4, 4));
        picMenu[i]->setAlignment(Qt::AlignCenter);
        picMenu[i]->setObjectName(QStringLiteral("picMenu%1").arg(i));
        setBorderStyle(picMenu[i], 0);
    }
    for (int i = 0; i < 5; ++i) {
        lblMenu[i] = new QLabel(this);
        lblMenu[i]->setAlignment(Qt::AlignCenter);
        lblMenu[i]->setObjectName(QStringLiteral("lblMenu%1").arg(i));
    }
    // The keyboard goes through the buttons in the order the strip shows them.
    const int tabOrder[7] = {0, 1, 4, 2, 3, 5, 6};
    for (int k = 1; k < 7; ++k)
        setTabOrder(picMenu[tabOrder[k - 1]], picMenu[tabOrder[k]]);
    // Activer and Dissocier appear only on their own tab and node.
    picMenu[1]->hide();
    picMenu[6]->hide();
    setFixedHeight(ButtonSize.height() + 26);
    setAutoFillBackground(true);
}

void CommandStrip::label() {
    static const int captions[][2] = {{0, 120}, {1, 121}, {3, 123}, {4, 124}, {2, 126}};
    for (const auto& [index, message] : captions)
        lblMenu[index]->setText(LoadText(message));
}

void CommandStrip::showListTab(bool activatedLists) {
    if (activatedLists)
        showInPlaceOf(4, 1);
    else
        showInPlaceOf(1, 4);
    lblMenu[1]->setText(LoadText(activatedLists ? 121 : 122));
}

void CommandStrip::showCatalogueChoice(bool listUnderCatalogue) {
    lblMenu[4]->setText(LoadText(listUnderCatalogue ? 125 : 124));
    if (listUnderCatalogue)
        showInPlaceOf(6, 5);
    else
        showInPlaceOf(5, 6);
}

void CommandStrip::showInPlaceOf(int shown, int hidden) {
    picMenu[hidden]->setVisible(false);
    picMenu[shown]->setVisible(true);
}

void CommandStrip::setBorderStyle(QLabel* button, int style) {
    button->setFrameShape(style == 1 ? QFrame::Panel : QFrame::NoFrame);
    button->setFrameShadow(style == 1 ? QFrame::Sunken : QFrame::Plain);
}

void CommandStrip::resizeEvent(QResizeEvent*) {
    for (int i = 0; i < 7; ++i)
        picMenu[i]->move(ButtonSlot[i] * SlotWidth + (SlotWidth - picMenu[i]->width()) / 2, 2);
    for (int i = 0; i < 5; ++i)
        lblMenu[i]->setGeometry(CaptionSlot[i] * SlotWidth, ButtonSize.height() + 6, SlotWidth, 18);
}
