#include "comms/downloadpage.h"

#include "app/messages.h"

#include <QCheckBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

DownloadPage::DownloadPage(QWidget* parent)
    : QWidget(parent), picFrame(new QWidget(this)), fraMAJ(new QGroupBox(picFrame)),
      txtExpList(new QLineEdit(picFrame)), cmdOK(new QPushButton(picFrame)),
      lblAttention(new QLabel(picFrame)) {
    picFrame->setObjectName(QStringLiteral("picFrame"));
    auto* choices = new QGridLayout(fraMAJ);
    for (int i = 0; i < 6; ++i) {
        chkMAJ[i] = new QCheckBox(fraMAJ);
        lblCHK[i] = new QLabel(fraMAJ);
        lblCHK[i]->setBuddy(chkMAJ[i]);
        choices->addWidget(chkMAJ[i], i, 0);
        choices->addWidget(lblCHK[i], i, 1);
    }
    // The installation's parts catalogue program keeps its own name in both languages.
    lblCHK[4]->setText(QStringLiteral("Partdex"));
    choices->addWidget(txtExpList, 2, 2);
    choices->setColumnStretch(3, 1); // the filter box stays beside its caption
    txtExpList->setMinimumWidth(220);
    txtExpList->setEnabled(false);
    txtExpList->setStyleSheet(QStringLiteral("background: #C0C0C0;"));

    lblAttention->setWordWrap(true);
    lblAttention->setStyleSheet(QStringLiteral("color: #B00000; font-weight: bold;"));
    cmdOK->setMinimumWidth(140);

    auto* frameLayout = new QVBoxLayout(picFrame);
    frameLayout->addWidget(fraMAJ);
    auto* buttonRow = new QHBoxLayout;
    buttonRow->addWidget(cmdOK);
    buttonRow->addWidget(lblAttention, 1);
    frameLayout->addLayout(buttonRow);
    frameLayout->addStretch(1);
}

void DownloadPage::fitFrame() {
    picFrame->setGeometry(rect());
}

void DownloadPage::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    fitFrame();
}

void DownloadPage::labelUpdateFrame() {
    fraMAJ->setTitle(LoadText(110));
}

void DownloadPage::labelChoices() {
    const int texts[] = {85, 86, 87, 43, -1, 48};
    for (int i = 0; i < 6; ++i) {
        if (texts[i] >= 0)
            lblCHK[i]->setText(LoadText(texts[i]));
    }
}

void DownloadPage::labelWarning() {
    lblAttention->setText(LoadText(89));
}

void DownloadPage::labelDownloadButton() {
    cmdOK->setToolTip(LoadText(96));
    cmdOK->setText(LoadText(96));
}
