#pragma once

#include <QLabel>
#include <QWidget>
#include <array>

// The command strip of the main window, as far as the trees change it: frmMain creates the
// buttons picMenu(0 to 6) and their captions lblMenu(0 to 4) and lends them here. Buttons that
// share a place (1 and 4, 5 and 6) replace each other through visibility.
struct CommandButtons {
    std::array<QWidget*, 7> picMenu{};
    std::array<QLabel*, 5> lblMenu{};

    void setMenuCaption(int index, const QString& caption) const;
    // Shows one button and hides the one that shares its place.
    void showInPlaceOf(int shown, int hidden) const;
};
