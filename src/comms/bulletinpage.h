#pragma once

#include "comms/bulletins.h"

#include <QList>
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

    // Reads the newsletters' index again and lists its advertisers, then shows the first
    // advertiser's first newsletter. Nothing in update mode. A failure shows
    // "errSetupBulletin: " with its number and description; the lists stay as far as they were
    // filled, and an index that cannot be read leaves them as they were.
    void SetupBulletin();
    // The user chose an advertiser: its subjects are listed, none chosen yet.
    void cmbAnnonceurClick();
    // The user chose a subject: its newsletter is shown.
    void cmbSujetClick();

    const BulletinTable& BulletinRows() const { return bulletinRows_; }
    // The first row of the chosen advertiser, -1 when none.
    int FirstSubjectRow() const { return firstSubjectRow_; }

private:
    void fillAdvertisers();
    void selectFirstNewsletter();

    BulletinTable bulletinRows_;
    int firstSubjectRow_ = -1;
    // The row of each entry of cmbSujet: a subject is found by its own row, so that an
    // advertiser whose rows the sort did not keep together still shows the chosen newsletter.
    QList<int> subjectRows_;
};
