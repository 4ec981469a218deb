#pragma once

#include <QWidget>

class QComboBox;
class QLabel;
class QTextEdit;

// The newsletters tab: the advertiser and subject choices and the newsletter's text.
class BulletinPage : public QWidget {
    Q_OBJECT
public:
    explicit BulletinPage(QWidget* parent = nullptr);

    QLabel* lblAnnonceur;
    QComboBox* cmbAnnonceur;
    QLabel* lblSujet;
    QComboBox* cmbSujet;
    QTextEdit* rtxBulletins;

    // The pane's captions in the current language.
    void label();
};
