#pragma once

#include <QWidget>

class QLabel;

// The window shown while the program starts: the picture of the chosen language, the maker's
// name, the title with the version, and "Chargement en cours...".
class frmSplash : public QWidget {
    Q_OBJECT
public:
    explicit frmSplash(QWidget* parent = nullptr);

    QLabel* Picture1;
    QLabel* Label1;
    QLabel* Label2;
};

// The splash picture of a language (1000 French, otherwise English), drawn by the program.
QPixmap SplashPicture(int nation);
