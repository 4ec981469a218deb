#include "comms/bulletinpage.h"

#include "app/appstate.h"
#include "app/messages.h"
#include "app/prompts.h"
#include "comms/rtfreader.h"
#include "dbase/dberror.h"

#include <QComboBox>
#include <QGridLayout>
#include <QLabel>
#include <QTextCursor>
#include <QTextEdit>

namespace {

// Choosing an entry of an empty list, as the first advertiser of an index whose records all
// lack one.
constexpr qint64 InvalidPropertyValue = 380;

void ChooseFirst(QComboBox& box) {
    if (box.count() == 0)
        throw DbError(InvalidPropertyValue, QStringLiteral("Invalid property value"));
    box.setCurrentIndex(0);
}

} // namespace

BulletinPage::BulletinPage(QWidget* parent)
    : QWidget(parent), lblAnnonceur(new QLabel(this)), cmbAnnonceur(new QComboBox(this)),
      lblSujet(new QLabel(this)), cmbSujet(new QComboBox(this)), rtxBulletins(new QTextEdit(this)) {
    rtxBulletins->setReadOnly(true);
    lblAnnonceur->setBuddy(cmbAnnonceur);
    lblSujet->setBuddy(cmbSujet);
    auto* grid = new QGridLayout(this);
    grid->addWidget(lblAnnonceur, 0, 0);
    grid->addWidget(cmbAnnonceur, 0, 1);
    grid->addWidget(lblSujet, 0, 2);
    grid->addWidget(cmbSujet, 0, 3);
    grid->addWidget(rtxBulletins, 1, 0, 1, 4);
    grid->setColumnStretch(1, 1);
    grid->setColumnStretch(3, 2);
    // A choice of the user's (mouse or keys); the program's own choices call the handlers.
    connect(cmbAnnonceur, &QComboBox::activated, this, [this] { cmbAnnonceurClick(); });
    connect(cmbSujet, &QComboBox::activated, this, [this] { cmbSujetClick(); });
}

void BulletinPage::label() {
    lblAnnonceur->setText(LoadText(118));
    lblSujet->setText(LoadText(119));
}

void BulletinPage::SetupBulletin() {
    if (App().UpdateMode)
        return;
    try {
        bulletinRows_ = LoadBulletinRows(App().InfoPath);
        fillAdvertisers();
        selectFirstNewsletter();
    } catch (const DbError& error) {
        MsgBox(QStringLiteral("errSetupBulletin: ") + QString::number(error.number()) + u' ' +
               error.description());
    }
}

void BulletinPage::fillAdvertisers() {
    cmbAnnonceur->clear();
    cmbSujet->clear();
    subjectRows_.clear();
    cmbAnnonceur->addItems(Advertisers(bulletinRows_));
}

void BulletinPage::selectFirstNewsletter() {
    ChooseFirst(*cmbAnnonceur);
    cmbAnnonceurClick();
    ChooseFirst(*cmbSujet);
    cmbSujetClick();
}

void BulletinPage::cmbAnnonceurClick() {
    firstSubjectRow_ = -1;
    cmbSujet->clear();
    subjectRows_.clear();
    if (cmbAnnonceur->currentIndex() < 0)
        return;
    const AdvertiserSubjects found = SubjectsOf(bulletinRows_, cmbAnnonceur->currentText());
    firstSubjectRow_ = found.firstRow;
    subjectRows_ = found.rows;
    cmbSujet->addItems(found.subjects);
    cmbSujet->setCurrentIndex(-1);
}

void BulletinPage::cmbSujetClick() {
    const int index = cmbSujet->currentIndex();
    if (index < 0 || index >= subjectRows_.size())
        return;
    SetNewsletterText(*rtxBulletins->document(), BulletinText(bulletinRows_, subjectRows_[index]));
    rtxBulletins->moveCursor(QTextCursor::Start);
}
