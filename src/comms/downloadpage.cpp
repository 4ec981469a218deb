#include "comms/downloadpage.h"

#include "app/messages.h"

#include <QCheckBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QMouseEvent>
#include <QProgressBar>
#include <QPushButton>
#include <QVBoxLayout>
#include <algorithm>

DownloadPage::DownloadPage(QWidget* parent)
    : QWidget(parent), picFrame(new QWidget(this)), fraMAJ(new QGroupBox(picFrame)),
      txtExpList(new QLineEdit(picFrame)), cmdOK(new QPushButton(picFrame)),
      lblAttention(new QLabel(picFrame)), ProgressBar1(new QProgressBar(picFrame)),
      lblIDTransfert(new QLabel(picFrame)), lblTransfert(new QLabel(picFrame)) {
    picFrame->setObjectName(QStringLiteral("picFrame"));
    auto* choices = new QGridLayout(fraMAJ);
    for (int i = 0; i < 6; ++i) {
        chkMAJ[i] = new QCheckBox(fraMAJ);
        lblCHK[i] = new QLabel(fraMAJ);
        lblCHK[i]->setBuddy(chkMAJ[i]);
        choices->addWidget(chkMAJ[i], i, 0);
        choices->addWidget(lblCHK[i], i, 1);
        connect(chkMAJ[i], &QCheckBox::clicked, this, [this, i] { chkMAJClick(i); });
        chkMAJ[i]->installEventFilter(this);
    }
    // The installation's parts catalogue program keeps its own name in both languages.
    lblCHK[4]->setText(QStringLiteral("Partdex"));
    choices->addWidget(txtExpList, 2, 2);
    choices->setColumnStretch(3, 1); // the filter box stays beside its caption
    txtExpList->setMinimumWidth(220);
    txtExpList->setEnabled(false);
    txtExpList->setStyleSheet(QStringLiteral("background: #C0C0C0;"));
    ProgressBar1->setRange(0, 100);
    ProgressBar1->setValue(0);
    ProgressBar1->setTextVisible(false);
    lblTransfert->setMinimumHeight(2 * lblTransfert->fontMetrics().lineSpacing());

    lblAttention->setWordWrap(true);
    lblAttention->setStyleSheet(QStringLiteral("color: #B00000; font-weight: bold;"));
    cmdOK->setMinimumWidth(140);

    auto* frameLayout = new QVBoxLayout(picFrame);
    frameLayout->addWidget(fraMAJ);
    auto* buttonRow = new QHBoxLayout;
    buttonRow->addWidget(cmdOK);
    buttonRow->addWidget(lblAttention, 1);
    frameLayout->addLayout(buttonRow);
    frameLayout->addWidget(lblIDTransfert);
    frameLayout->addWidget(ProgressBar1);
    frameLayout->addWidget(lblTransfert);
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

void DownloadPage::chkMAJClick(int index) {
    const bool checked = chkMAJ[index]->isChecked();
    if (index == 2) {
        txtExpList->setEnabled(checked);
        txtExpList->setStyleSheet(checked ? QStringLiteral("background: #FFFFFF;")
                                          : QStringLiteral("background: #C0C0C0;"));
        if (checked)
            txtExpList->setFocus();
    }
    setChoicesEnabled(!checked);
    if (checked)
        chkMAJ[index]->setEnabled(true);
}

void DownloadPage::setChoicesEnabled(bool enabled) {
    for (QCheckBox* box : chkMAJ)
        box->setEnabled(enabled);
}

bool DownloadPage::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::MouseButtonRelease &&
        std::find(chkMAJ.begin(), chkMAJ.end(), watched) != chkMAJ.end())
        Q_EMIT choiceMouseUp();
    return QWidget::eventFilter(watched, event);
}
