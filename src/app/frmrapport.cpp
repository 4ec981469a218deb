#include "app/frmrapport.h"

#include "app/messages.h"

#include <QHBoxLayout>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QVBoxLayout>

frmRapport::frmRapport(const QString& reportText, QWidget* parent) : QDialog(parent) {
    setWindowTitle(LoadText(0));
    txtRapport = new QPlainTextEdit(this);
    txtRapport->setReadOnly(true);
    txtRapport->setLineWrapMode(QPlainTextEdit::NoWrap);
    // The report is built with CR LF line breaks; the box shows them as plain lines.
    QString text = reportText;
    txtRapport->setPlainText(text.replace(QStringLiteral("\r\n"), QStringLiteral("\n")));
    cmdOK = new QPushButton(QStringLiteral("OK"), this);
    cmdOK->setDefault(true);
    connect(cmdOK, &QPushButton::clicked, this, &frmRapport::cmdOKClick);

    auto* buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(cmdOK);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(txtRapport);
    layout->addLayout(buttons);
    resize(560, 380);
}

void frmRapport::cmdOKClick() {
    accept();
}
