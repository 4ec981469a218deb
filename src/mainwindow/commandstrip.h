#pragma once

#include <QIcon>
#include <QLabel>
#include <array>
#include <functional>

// A picture button of the command strip: drawn pressed between mouse-down and mouse-up. The
// keyboard reaches it with Tab: Space presses and releases it as the mouse does, Enter does
// both at once. A screen reader knows it as a button named by its caption.
class MenuPicture : public QLabel {
    Q_OBJECT
public:
    MenuPicture(int index, QWidget* parent);
    const int index;

    std::function<bool(int)> onPress; // false: the press was refused (changes to save first)
    std::function<void(int)> onRelease;

    // The button's own mouse-down and mouse-up, whatever brought them.
    void press();
    void release();
    // Both at once, as Enter or a screen reader's press does.
    void click();
    bool isPressed() const { return pressed_; }

protected:
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void keyReleaseEvent(QKeyEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    void setPressed(bool pressed);

    QIcon picture_;
    bool pressed_ = false;
};

// The strip above the panes: seven picture buttons and their five captions. Buttons 1 and 4,
// and 5 and 6, share a place and replace each other.
class CommandStrip : public QWidget {
    Q_OBJECT
public:
    explicit CommandStrip(QWidget* parent = nullptr);

    std::array<MenuPicture*, 7> picMenu{};
    std::array<QLabel*, 5> lblMenu{};

    // The captions in the current language; each button is named after its own caption.
    void label();
    // The tab of activated lists offers Désactiver (button 4), that of the others Activer
    // (button 1), in the same place.
    void showListTab(bool activatedLists);
    // A list under a catalogue offers Dissocier (button 6), any other node Associer (button 5).
    void showCatalogueChoice(bool listUnderCatalogue);

    // Sets a button's border: 0 flat, 1 pressed.
    static void setBorderStyle(QLabel* button, int style);

protected:
    void resizeEvent(QResizeEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    // Shows one button and hides the one that shares its place.
    void showInPlaceOf(int shown, int hidden);
    void placeButtons();
};
