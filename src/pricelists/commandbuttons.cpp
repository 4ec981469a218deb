#include "pricelists/commandbuttons.h"

void CommandButtons::setMenuCaption(int index, const QString& caption) const {
    if (QLabel* label = lblMenu.at(index))
        label->setText(caption);
}

void CommandButtons::showInPlaceOf(int shown, int hidden) const {
    if (QWidget* button = picMenu.at(hidden))
        button->setVisible(false);
    if (QWidget* button = picMenu.at(shown))
        button->setVisible(true);
}
