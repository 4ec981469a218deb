#include "app/frmerrmsg.h"

#include "app/appstate.h"
#include "app/messages.h"
#include "app/okdialoglayout.h"

#include <QKeyEvent>
#include <QLabel>
#include <QPushButton>

frmErrMsg::frmErrMsg(QWidget* parent) : QDialog(parent) {
    setWindowTitle(LoadText(0));
    lblMessage = new QLabel(App().ErrorText + QStringLiteral("\r\n") + App().ContactLine, this);
    lblMessage->setWordWrap(true);
    lblMessage->setTextInteractionFlags(Qt::TextSelectableByMouse);
    cmdOK = LayOutWithOkButton(*this, lblMessage);
    connect(cmdOK, &QPushButton::clicked, this, &frmErrMsg::cmdOKClick);
    setMinimumWidth(460);
}

void frmErrMsg::cmdOKClick() {
    accept();
}

void frmErrMsg::keyPressEvent(QKeyEvent* event) {
    // The form itself reacts to no key; Enter still presses the focused OK button.
    event->accept();
}
