#include "partsfile/frmstock.h"

#include "app/appstate.h"
#include "app/fileop.h"
#include "app/messages.h"
#include "app/prompts.h"
#include "app/serviceprogram.h"
#include "data/moddata.h"
#include "dbase/dberror.h"
#include "dbase/recordset.h"
#include "partsfile/partsearch.h"
#include "partsfile/modntx.h"
#include "partsfile/partsearchpane.h"

#include <QApplication>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QVBoxLayout>

namespace {

constexpr int KeyEnter = 13;
constexpr int PartNumberLength = 15;

const QString ReplaceOperation = QStringLiteral("2");
const QString DeleteOperation = QStringLiteral("3");

bool isBlank(const QLineEdit* field) {
    return field->text().trimmed().isEmpty();
}

// A work table of the programs directory, made anew: the old file goes first.
void createWorkTable(const QString& table, const QString& statement) {
    FileOp(QStringLiteral("DELETE"), App().PrgPath + table + QStringLiteral(".DBF"));
    connPrg.execute(statement);
}

// The service program runs with the wait cursor shown.
class WaitCursor {
public:
    WaitCursor() { QApplication::setOverrideCursor(Qt::WaitCursor); }
    ~WaitCursor() { QApplication::restoreOverrideCursor(); }
    WaitCursor(const WaitCursor&) = delete;
    WaitCursor& operator=(const WaitCursor&) = delete;
};

} // namespace

frmStock::frmStock(PartSearchPane* parts, QWidget* parent)
    : QDialog(parent), fraStock(new QGroupBox(this)), lblAnc(new QLabel(fraStock)),
      lblNouv(new QLabel(fraStock)), cmdRemplace(new QPushButton(this)),
      cmdEfface(new QPushButton(this)), cmdFermer(new QPushButton(this)), parts_(parts) {
    setWindowTitle(LoadText(106));
    lblAnc->setText(LoadText(102));
    lblNouv->setText(LoadText(103));
    cmdRemplace->setText(LoadText(104));
    cmdEfface->setText(LoadText(105));
    cmdFermer->setText(LoadText(107));

    auto* rows = new QGridLayout(fraStock);
    rows->addWidget(lblAnc, 0, 0);
    rows->addWidget(lblNouv, 0, 1);
    for (int i = 0; i < RowCount; ++i) {
        txtOri[i] = new QLineEdit(fraStock);
        txtNouv[i] = new QLineEdit(fraStock);
        for (QLineEdit* field : {txtOri[i], txtNouv[i]}) {
            field->setMaxLength(PartNumberLength);
            field->installEventFilter(this);
        }
        txtOri[i]->setObjectName(QStringLiteral("txtOri%1").arg(i));
        txtNouv[i]->setObjectName(QStringLiteral("txtNouv%1").arg(i));
        rows->addWidget(txtOri[i], i + 1, 0);
        rows->addWidget(txtNouv[i], i + 1, 1);
    }
    // Tab order: row by row, current number then new number, then the buttons.
    for (int i = 0; i < RowCount; ++i) {
        setTabOrder(txtOri[i], txtNouv[i]);
        if (i + 1 < RowCount)
            setTabOrder(txtNouv[i], txtOri[i + 1]);
    }
    setTabOrder(txtNouv[RowCount - 1], cmdRemplace);
    setTabOrder(cmdRemplace, cmdEfface);
    setTabOrder(cmdEfface, cmdFermer);

    auto* buttons = new QHBoxLayout;
    buttons->addStretch();
    for (QPushButton* button : {cmdRemplace, cmdEfface, cmdFermer}) {
        button->setAutoDefault(false);
        buttons->addWidget(button);
    }
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(fraStock);
    layout->addLayout(buttons);

    connect(cmdRemplace, &QPushButton::clicked, this, &frmStock::cmdRemplaceClick);
    connect(cmdEfface, &QPushButton::clicked, this, &frmStock::cmdEffaceClick);
    connect(cmdFermer, &QPushButton::clicked, this, &frmStock::cmdFermerClick);
}

void frmStock::txtKeyPress(int& keyAscii) {
    if (keyAscii == KeyEnter) {
        keyAscii = 0;
        focusNextChild();
        return;
    }
    keyAscii = QChar(keyAscii).toUpper().unicode();
}

void frmStock::txtOriLostFocus(int index) {
    const QString text = txtOri[index]->text();
    if (text.trimmed().isEmpty() || !parts_)
        return;
    parts_->lstPieces->clear();
    qint32 lines = PartSearch::LineCount(parts_->txtMax->text());
    modNTX::SearchStock(text, lines,
                        [this](const QString& line) { parts_->lstPieces->addItem(line); });
}

void frmStock::writeReplacements() {
    createWorkTable(QStringLiteral("MEREMPLA"),
                    QStringLiteral("CREATE TABLE MEREMPLA (ORI TEXT(15), NEW TEXT(15))"));
    Recordset rs;
    rs.open(QStringLiteral("MEREMPLA"), connPrg, CursorType::Keyset, LockType::Optimistic);
    for (int i = 0; i < RowCount; ++i) {
        if (isBlank(txtOri[i]))
            continue;
        // A new number that begins with the current one would be renumbered again and again.
        if (txtNouv[i]->text().startsWith(txtOri[i]->text().trimmed())) {
            MsgBox(LoadText(99) + u' ' + txtOri[i]->text());
            continue;
        }
        rs.addNew();
        rs.setValue(QStringLiteral("ORI"), txtOri[i]->text());
        rs.setValue(QStringLiteral("New"), txtNouv[i]->text());
        rs.update();
    }
    rs.close();
}

void frmStock::writeDeletions() {
    createWorkTable(QStringLiteral("MEEFFACE"),
                    QStringLiteral("CREATE TABLE MEEFFACE (ORI TEXT(15))"));
    Recordset rs;
    rs.open(QStringLiteral("MEEFFACE"), connPrg, CursorType::Keyset, LockType::Optimistic);
    for (int i = 0; i < RowCount; ++i) {
        if (isBlank(txtOri[i]))
            continue;
        rs.addNew();
        rs.setValue(QStringLiteral("ORI"), txtOri[i]->text());
        rs.update();
    }
    rs.close();
}

// Writes the work table, then hands it to the service program. A work table that cannot be
// written (held by another workstation, say) is reported, and the dialog may try again.
void frmStock::runOperation(void (frmStock::*writeTable)(), const QString& operationCode) {
    cmdRemplace->setEnabled(false);
    cmdEfface->setEnabled(false);
    try {
        (this->*writeTable)();
    } catch (const DbError& error) {
        MsgBox(QStringLiteral("errStock: ") + QString::number(error.number()) +
                   QStringLiteral("\r\n") + error.description() + QStringLiteral("\r\n") +
                   App().ContactLine,
               Buttons::Ok, Icon::Critical);
        cmdRemplace->setEnabled(true);
        cmdEfface->setEnabled(true);
        return;
    }
    WaitCursor wait;
    RunServiceProgram(operationCode);
    if (operationCode == DeleteOperation)
        MsgBox(LoadText(117));
}

void frmStock::cmdRemplaceClick() {
    runOperation(&frmStock::writeReplacements, ReplaceOperation);
}

void frmStock::cmdEffaceClick() {
    runOperation(&frmStock::writeDeletions, DeleteOperation);
}

void frmStock::cmdFermerClick() {
    close();
}

bool frmStock::eventFilter(QObject* watched, QEvent* event) {
    auto* field = qobject_cast<QLineEdit*>(watched);
    if (!field)
        return QDialog::eventFilter(watched, event);
    if (event->type() == QEvent::FocusOut) {
        for (int i = 0; i < RowCount; ++i)
            if (field == txtOri[i])
                txtOriLostFocus(i);
    }
    if (event->type() != QEvent::KeyPress)
        return QDialog::eventFilter(watched, event);
    auto* key = static_cast<QKeyEvent*>(event);
    const bool enter = key->key() == Qt::Key_Return || key->key() == Qt::Key_Enter;
    if (!enter && key->text().isEmpty())
        return false; // arrows, Delete, Home...: the field handles them
    int keyAscii = enter ? KeyEnter : key->text().front().unicode();
    const int typed = keyAscii;
    txtKeyPress(keyAscii);
    if (keyAscii == 0)
        return true;
    if (keyAscii == typed)
        return false;
    field->insert(QString(QChar(keyAscii)));
    return true;
}
