#include "mainwindow/commandstrip.h"

#include "app/icons.h"
#include "app/messages.h"

#include <QAccessibleWidget>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QStyle>
#include <QStyleOptionFocusRect>
#include <algorithm>

namespace {

// Sizes in pixels at 96 dots per inch, grown with the screen's logical resolution.
const QSize PictureSize(32, 32);
const QSize ButtonSize(46, 42);
const int MinSlotWidth = 110;

double densityScale(const QWidget* widget) {
    return widget->logicalDpiX() / 96.0;
}

// The place of each button on the strip, and of each caption.
const int ButtonSlot[7] = {0, 1, 2, 3, 1, 4, 4};
const int CaptionSlot[5] = {0, 1, 3, 2, 4};
// The message that names each button: its own caption, also while it is hidden.
const int ButtonCaption[7] = {120, 122, 123, 126, 121, 124, 125};

// What a screen reader sees of a picture button: a button with its caption as its name, which
// it can press.
class MenuPictureAccessible : public QAccessibleWidget {
public:
    explicit MenuPictureAccessible(MenuPicture* picture)
        : QAccessibleWidget(picture, QAccessible::Button) {}
    QStringList actionNames() const override { return {pressAction()}; }
    void doAction(const QString& action) override {
        if (action == pressAction())
            picture()->click();
    }
    QAccessible::State state() const override {
        QAccessible::State state = QAccessibleWidget::state();
        state.pressed = picture()->isPressed();
        return state;
    }

private:
    MenuPicture* picture() const { return static_cast<MenuPicture*>(widget()); }
};

QAccessibleInterface* menuPictureAccessible(const QString& className, QObject* object) {
    if (className == QLatin1String("MenuPicture") && object && object->isWidgetType())
        return new MenuPictureAccessible(static_cast<MenuPicture*>(object));
    return nullptr;
}

} // namespace

MenuPicture::MenuPicture(int index, QWidget* parent)
    : QLabel(parent), index(index), picture_(CommandIcon(index)) {
    setFocusPolicy(Qt::TabFocus);
    setFixedSize(ButtonSize * densityScale(this));
}

void MenuPicture::press() {
    setPressed(!onPress || onPress(index));
}

void MenuPicture::release() {
    if (!pressed_)
        return;
    setPressed(false);
    if (onRelease)
        onRelease(index);
}

void MenuPicture::click() {
    press();
    release();
}

void MenuPicture::setPressed(bool pressed) {
    pressed_ = pressed;
    CommandStrip::setBorderStyle(this, pressed ? 1 : 0);
    update();
}

void MenuPicture::mousePressEvent(QMouseEvent* event) {
    if (event->button() == Qt::LeftButton)
        press();
}

void MenuPicture::mouseReleaseEvent(QMouseEvent* event) {
    if (event->button() == Qt::LeftButton)
        release();
}

void MenuPicture::keyPressEvent(QKeyEvent* event) {
    switch (event->key()) {
    case Qt::Key_Space:
        if (!event->isAutoRepeat())
            press();
        break;
    case Qt::Key_Return:
    case Qt::Key_Enter:
        if (!event->isAutoRepeat())
            click();
        break;
    default:
        QLabel::keyPressEvent(event);
    }
}

void MenuPicture::keyReleaseEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Space && !event->isAutoRepeat())
        release();
    else
        QLabel::keyReleaseEvent(event);
}

// A button held down by the Space key comes up without acting when the focus leaves it.
void MenuPicture::focusOutEvent(QFocusEvent* event) {
    if (pressed_)
        setPressed(false);
    QLabel::focusOutEvent(event);
}

void MenuPicture::paintEvent(QPaintEvent* event) {
    QFrame::paintEvent(event); // the border: flat or pressed
    QPainter painter(this);
    const QSize size = PictureSize * densityScale(this);
    QRect place(QPoint(), size);
    place.moveCenter(contentsRect().center());
    if (pressed_)
        place.translate(1, 1);
    // Drawn from the picture made for this screen's density, so it stays sharp at any scale.
    const QIcon::Mode mode = isEnabled() ? QIcon::Normal : QIcon::Disabled;
    painter.drawPixmap(place, picture_.pixmap(size, devicePixelRatioF(), mode));
    if (hasFocus()) {
        QStyleOptionFocusRect focus;
        focus.initFrom(this);
        focus.rect = rect().adjusted(1, 1, -1, -1);
        style()->drawPrimitive(QStyle::PE_FrameFocusRect, &focus, &painter, this);
    }
}

CommandStrip::CommandStrip(QWidget* parent) : QWidget(parent) {
    setObjectName(QStringLiteral("Picture1"));
    static const bool accessible = [] {
        QAccessible::installFactory(menuPictureAccessible);
        return true;
    }();
    Q_UNUSED(accessible);
    for (int i = 0; i < 7; ++i) {
        picMenu[i] = new MenuPicture(i, this);
        picMenu[i]->setObjectName(QStringLiteral("picMenu%1").arg(i));
        setBorderStyle(picMenu[i], 0);
    }
    for (int i = 0; i < 5; ++i) {
        lblMenu[i] = new QLabel(this);
        lblMenu[i]->setAlignment(Qt::AlignCenter);
        lblMenu[i]->setObjectName(QStringLiteral("lblMenu%1").arg(i));
    }
    // The keyboard goes through the buttons in the order they stand on the strip.
    static const int keyboardOrder[7] = {0, 1, 4, 2, 3, 5, 6};
    for (int i = 1; i < 7; ++i)
        setTabOrder(picMenu[keyboardOrder[i - 1]], picMenu[keyboardOrder[i]]);
    // Activer and Dissocier appear only on their own tab and node.
    picMenu[1]->hide();
    picMenu[6]->hide();
    setFixedHeight(picMenu[0]->height() + fontMetrics().height() + int(14 * densityScale(this)));
    setAutoFillBackground(true);
}

void CommandStrip::label() {
    static const int captions[][2] = {{0, 120}, {1, 121}, {3, 123}, {4, 124}, {2, 126}};
    for (const auto& [index, message] : captions)
        lblMenu[index]->setText(LoadText(message));
    for (int i = 0; i < 7; ++i)
        picMenu[i]->setAccessibleName(LoadText(ButtonCaption[i]));
    placeButtons();
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

// A line under the strip sets it apart from the panes.
void CommandStrip::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setPen(palette().color(QPalette::Mid));
    painter.drawLine(0, height() - 1, width(), height() - 1);
}

void CommandStrip::resizeEvent(QResizeEvent*) {
    placeButtons();
}

// Each place is as wide as the longest caption of the language needs.
void CommandStrip::placeButtons() {
    const double scale = densityScale(this);
    int slotWidth = int(MinSlotWidth * scale);
    for (const MenuPicture* button : picMenu)
        slotWidth = std::max(slotWidth, fontMetrics().horizontalAdvance(button->accessibleName()) +
                                            int(16 * scale));
    const QSize button = picMenu[0]->size();
    const int top = int(2 * scale);
    for (int i = 0; i < 7; ++i)
        picMenu[i]->move(ButtonSlot[i] * slotWidth + (slotWidth - button.width()) / 2, top);
    const int captionTop = top + button.height() + top;
    for (int i = 0; i < 5; ++i)
        lblMenu[i]->setGeometry(CaptionSlot[i] * slotWidth, captionTop, slotWidth,
                                height() - captionTop);
}
