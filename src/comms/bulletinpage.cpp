#include "comms/bulletinpage.h"

#include "app/messages.h"

#include <QComboBox>
#include <QGridLayout>
#include <QLabel>
#include <QTextEdit>

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
}

void BulletinPage::label() {
    lblAnnonceur->setText(LoadText(118));
    lblSujet->setText(LoadText(119));
}
