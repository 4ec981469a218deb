#include "app/frmerrmsg.h"

#include "app/appstate.h"
#include "app/messages.h"

#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

frmErrMsg::frmErrMsg(QWidget* parent) : QDialog(parent) {
    setWindowTitle(LoadText(0));
    lblMessage = new QLabel(App().ErrorText + QStringLiteral("\r\n") + App().ContactLine, this);
    lblMessage->setWordWrap(true);
    lblMessage->setTextInteractionFlags(Qt::TextSelectableByMouse);
    cmdOK = new QPushButton(QStringLiteral("OK"), this);
    cmdOK->setDefault(true);
    connect(cmdOK, &QPushButton::clicked, this, &frmErrMsg::cmdOKClick);

    auto* buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(cmdOK);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(lblMessage);
    layout->addLayout(buttons);
    setMinimumWidth(460);
}

void frmErrMsg::cmdOKClick() {
    accept();
}

void frmErrMsg::keyPressEvent(QKeyEvent* event) {
    // The form itself reacts to no key; Enter still presses the focused OK button.
    event->accept();
}
