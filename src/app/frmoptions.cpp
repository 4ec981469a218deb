#include "app/frmoptions.h"

#include "app/appstate.h"
#include "app/fileop.h"
#include "app/hiddenstrings.h"
#include "app/messages.h"
#include "app/prompts.h"
#include "app/settings.h"

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QDir>
#include <QFocusEvent>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

namespace {

// Catalogue numbers of the window's own texts.
enum : int {
    TextLanguageFrench = 32,
    TextLanguageEnglish = 33,
    TextInvalidDirectory = 58,
    TextLanguage = 90,
    TextWorkingDirectory = 91,
    TextClearSelection = 92,
    TextSaveLayout = 93,
    TextTitle = 100,
    TextCancel = 140,
    TextInvalidPort = 160,
    TextHostMissing = 161,
    TextServer = 162,
    TextPort = 163,
    TextDefaultServer = 164,
};

const int DefaultPort = 2001;
// Entry of the hidden table naming the file that marks a data directory.
const int DataDirectoryMarker = 17;

// The directory as the program keeps its paths: ending with the separator, so that file names
// can be appended to it.
QString directoryText(const QString& typed) {
    if (typed.isEmpty() || typed.endsWith(u'/') || typed.endsWith(QDir::separator()))
        return typed;
    return typed + QDir::separator();
}

// The port as the dealer knows it. The setting is a 16-bit integer, so a port above 32767 is
// kept under its 16-bit pattern; reading it back unsigned gives the port again.
int storedPort(const AppSettings& settings) {
    return static_cast<quint16>(settings.Port);
}

} // namespace

frmOptions::frmOptions(QWidget* parent) : QDialog(parent) {
    buildControls();
    load();
}

void frmOptions::buildControls() {
    lblLangue = new QLabel(this);
    cmbLangue = new QComboBox(this);
    lblRepTravail = new QLabel(this);
    txtRepTravail = new QLineEdit(this);
    lblIP = new QLabel(this);
    txtIP = new QLineEdit(this);
    lblPort = new QLabel(this);
    txtPort = new QLineEdit(this);
    txtPort->setMaxLength(5);
    txtPort->setMaximumWidth(txtPort->fontMetrics().horizontalAdvance(QStringLiteral("0000000")) +
                             16);
    chkSelection = new QCheckBox(this);
    chkSauve = new QCheckBox(this);
    cmdDefault = new QPushButton(this);
    cmdOK = new QPushButton(QStringLiteral("OK"), this);
    cmdOK->setDefault(true);
    cmdCancel = new QPushButton(this);

    lblLangue->setBuddy(cmbLangue);
    lblRepTravail->setBuddy(txtRepTravail);
    lblIP->setBuddy(txtIP);
    lblPort->setBuddy(txtPort);

    auto* fields = new QFormLayout;
    fields->addRow(lblLangue, cmbLangue);
    fields->addRow(lblRepTravail, txtRepTravail);
    fields->addRow(lblIP, txtIP);
    fields->addRow(lblPort, txtPort);

    auto* buttons = new QHBoxLayout;
    buttons->addWidget(cmdDefault);
    buttons->addStretch();
    buttons->addWidget(cmdOK);
    buttons->addWidget(cmdCancel);

    auto* layout = new QVBoxLayout(this);
    layout->addLayout(fields);
    layout->addWidget(chkSelection);
    layout->addWidget(chkSauve);
    layout->addSpacing(8);
    layout->addLayout(buttons);

    txtRepTravail->installEventFilter(this);
    connect(cmdDefault, &QPushButton::clicked, this, &frmOptions::cmdDefaultClick);
    connect(cmdOK, &QPushButton::clicked, this, &frmOptions::cmdOKClick);
    connect(cmdCancel, &QPushButton::clicked, this, &frmOptions::cmdCancelClick);
    resize(520, sizeHint().height());
}

void frmOptions::load() {
    const AppState& app = App();
    txtIP->setText(app.Settings.IP);
    txtPort->setText(QString::number(storedPort(app.Settings)));

    setWindowTitle(LoadText(TextTitle));
    lblLangue->setText(LoadText(TextLanguage));
    cmbLangue->addItem(LoadText(TextLanguageFrench));
    cmbLangue->addItem(LoadText(TextLanguageEnglish));
    lblRepTravail->setText(LoadText(TextWorkingDirectory));
    lblIP->setText(LoadText(TextServer));
    lblPort->setText(LoadText(TextPort));
    chkSelection->setText(LoadText(TextClearSelection));
    chkSauve->setText(LoadText(TextSaveLayout));
    cmdDefault->setText(LoadText(TextDefaultServer));
    cmdCancel->setText(LoadText(TextCancel));

    cmbLangue->setCurrentIndex(app.Settings.Nation / 1000 - 1 == 1 ? 1 : 0);
    txtRepTravail->setText(app.DataPath);
    chkSelection->setChecked(app.Settings.Selection != 0);
    chkSauve->setChecked(app.Settings.Format == 1);
}

bool frmOptions::eventFilter(QObject* watched, QEvent* event) {
    if (watched == txtRepTravail && event->type() == QEvent::FocusOut) {
        // Leaving for another control of the window; switching to another window, or the
        // language list opening its pop-up, is not leaving.
        const Qt::FocusReason reason = static_cast<QFocusEvent*>(event)->reason();
        if (reason != Qt::ActiveWindowFocusReason && reason != Qt::PopupFocusReason &&
            !validationPending_) {
            validationPending_ = true;
            // The check runs once the focus has moved, not inside the focus change: a message box
            // opened in the middle of a click would leave the clicked button half pressed.
            QMetaObject::invokeMethod(this, &frmOptions::validateAfterLeaving,
                                      Qt::QueuedConnection);
        }
    }
    return QDialog::eventFilter(watched, event);
}

void frmOptions::validateAfterLeaving() {
    if (!validationPending_)
        return;
    // Cancel does not check the directory: the dealer may leave a wrong one behind.
    if (!isVisible() || QApplication::focusWidget() == cmdCancel) {
        validationPending_ = false;
        return;
    }
    txtRepTravailValidate();
}

bool frmOptions::txtRepTravailValidate() {
    validationPending_ = false;
    const QString marker = HiddenString(DataDirectoryMarker);
    if (FileOp(QString(), directoryText(txtRepTravail->text()) + marker))
        return true;
    MsgBox(LoadText(TextInvalidDirectory));
    txtRepTravail->setFocus(Qt::OtherFocusReason);
    return false;
}

void frmOptions::cmdDefaultClick() {
    txtIP->setText(DefaultServerHost());
    txtPort->setText(QString::number(DefaultPort));
    update();
}

std::optional<int> frmOptions::portEntered() {
    bool number = false;
    const int port = txtPort->text().trimmed().toInt(&number);
    if (number && port >= 1 && port <= 65535)
        return port;
    MsgBox(LoadText(TextInvalidPort));
    txtPort->setFocus(Qt::OtherFocusReason);
    txtPort->selectAll();
    return std::nullopt;
}

bool frmOptions::hostEntered() {
    if (!txtIP->text().trimmed().isEmpty())
        return true;
    MsgBox(LoadText(TextHostMissing));
    txtIP->setFocus(Qt::OtherFocusReason);
    return false;
}

void frmOptions::cmdOKClick() {
    // Enter presses OK without the focus leaving the directory box, and a quick click can land
    // before the check that leaving the box started: the directory is checked here too.
    if (!txtRepTravailValidate())
        return;
    const std::optional<int> port = portEntered();
    if (!port || !hostEntered())
        return;

    AppState& app = App();
    app.Settings.Nation = static_cast<qint16>((cmbLangue->currentIndex() + 1) * 1000);
    app.DataPath = directoryText(txtRepTravail->text());
    app.Settings.Selection = chkSelection->isChecked() ? 1 : 0;
    app.Settings.Format = chkSauve->isChecked() ? 1 : 0;
    app.Settings.IP = txtIP->text().trimmed();
    app.Settings.Port = static_cast<decltype(app.Settings.Port)>(*port);
    accept();
}

void frmOptions::cmdCancelClick() {
    validationPending_ = false;
    reject();
}
