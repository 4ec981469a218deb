#include "app/frmrapport.h"

#include "app/messages.h"
#include "app/okdialoglayout.h"

#include <QPlainTextEdit>
#include <QPushButton>

frmRapport::frmRapport(const QString& reportText, QWidget* parent) : QDialog(parent) {
    setWindowTitle(LoadText(0));
    txtRapport = new QPlainTextEdit(this);
    txtRapport->setReadOnly(true);
    txtRapport->setLineWrapMode(QPlainTextEdit::NoWrap);
    // The report is built with CR LF line breaks; the box shows them as plain lines.
    QString text = reportText;
    txtRapport->setPlainText(text.replace(QStringLiteral("\r\n"), QStringLiteral("\n")));
    cmdOK = LayOutWithOkButton(*this, txtRapport);
    connect(cmdOK, &QPushButton::clicked, this, &frmRapport::cmdOKClick);
    resize(560, 380);
}

void frmRapport::cmdOKClick() {
    accept();
}
