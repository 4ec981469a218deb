#include "mainwindow/downloadview.h"

#include "app/appstate.h"
#include "app/frmrapport.h"
#include "app/messages.h"
#include "comms/downloadpage.h"

#include <QApplication>
#include <QCheckBox>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QProgressBar>
#include <QPushButton>
#include <algorithm>
#include <cmath>

DownloadView::DownloadView(DownloadPage& page, QWidget& window, Hooks hooks)
    : page_(page), window_(window), hooks_(std::move(hooks)), session_(*this) {
    QObject::connect(page_.cmdOK, &QPushButton::clicked, &page_, [this] { cmdOKClick(); });
    QObject::connect(&page_, &DownloadPage::choiceMouseUp, &page_, [this] {
        if (hooks_.focusListTree)
            hooks_.focusListTree();
    });
}

void DownloadView::cmdOKClick() {
    if (!session_.running() && !App().UpdateMode && hooks_.savePendingChanges &&
        !hooks_.savePendingChanges())
        return;
    session_.cmdOKClick();
}

void DownloadView::showProgress(float percent) {
    // The bar's range is 0 to 100; more bytes than announced show a full bar.
    page_.ProgressBar1->setValue(std::clamp(int(std::lround(double(percent))), 0, 100));
}

void DownloadView::showTransferTitle(const QString& text) {
    page_.lblIDTransfert->setText(text);
}

void DownloadView::showTransferStatus(const QString& text) {
    page_.lblTransfert->setText(
        QString(text).replace(QStringLiteral("\r\n"), QStringLiteral("\n")));
}

void DownloadView::sessionStarted() {
    page_.cmdOK->setText(LoadText(116));
    if (hooks_.enableOtherControls)
        hooks_.enableOtherControls(false);
    // The frame's choices; the button stays usable as the stop button.
    page_.fraMAJ->setEnabled(false);
}

void DownloadView::setDownloadButtonEnabled(bool enabled) {
    page_.cmdOK->setEnabled(enabled);
}

void DownloadView::enableControls() {
    if (hooks_.enableOtherControls)
        hooks_.enableOtherControls(true);
    page_.fraMAJ->setEnabled(true);
    page_.cmdOK->setEnabled(true);
    page_.setChoicesEnabled(true);
}

void DownloadView::sessionEnded() {
    page_.cmdOK->setText(LoadText(96));
}

void DownloadView::setBusy(bool busy) {
    if (busy)
        window_.setCursor(Qt::WaitCursor);
    else
        window_.unsetCursor();
}

DownloadChoice DownloadView::downloadChoice() {
    DownloadChoice choice;
    for (int i = 0; i < 6; ++i)
        choice.boxes[i] = page_.chkMAJ[i]->isChecked();
    choice.expListText = page_.txtExpList->text();
    if (hooks_.fillListChoice)
        hooks_.fillListChoice(choice);
    return choice;
}

void DownloadView::uncheckBox(int index) {
    page_.chkMAJ[index]->setChecked(false);
}

QString DownloadView::choiceCaption(int index) const {
    return page_.lblCHK[index]->text();
}

void DownloadView::setChoiceCaption(int index, const QString& caption) {
    page_.lblCHK[index]->setText(caption);
}

void DownloadView::setChoiceBold(int index, bool bold) {
    QFont font = page_.lblCHK[index]->font();
    font.setBold(bold);
    page_.lblCHK[index]->setFont(font);
}

void DownloadView::rebuildViews() {
    if (hooks_.rebuildBulletins)
        hooks_.rebuildBulletins();
    if (hooks_.rebuildTrees)
        hooks_.rebuildTrees();
}

void DownloadView::restoreWindow() {
    QWidget* frame = window_.window();
    if (frame->isMinimized())
        frame->showNormal();
}

void DownloadView::showReport(const QString& report) {
    frmRapport rapport(report, &window_);
    rapport.exec();
}

void DownloadView::closeProgram() {
    if (hooks_.closeProgram)
        hooks_.closeProgram();
}
