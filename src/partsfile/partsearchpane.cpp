#include "partsfile/partsearchpane.h"

#include "app/appstate.h"
#include "app/messages.h"
#include "app/prompts.h"
#include "partsfile/partsearch.h"

#include <QFontDatabase>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QTimer>
#include <QVBoxLayout>

namespace {

constexpr int KeyEnter = 13;
constexpr int KeyBackspace = 8;
constexpr int KeyPaste = 22; // Ctrl+V, which the number field drops like any other character

// The character a key press types, as the field's key handler sees it; 0 for keys that type
// nothing (Tab, Delete, arrows, Home...), which the fields handle normally. On an X server
// such keys carry a control character as their text (a tab, DEL): that is not typing.
int typedCharacter(const QKeyEvent& key) {
    if (key.key() == Qt::Key_Return || key.key() == Qt::Key_Enter)
        return KeyEnter;
    if (key.key() == Qt::Key_Backspace)
        return KeyBackspace;
    if (key.matches(QKeySequence::Paste))
        return KeyPaste;
    const QString text = key.text();
    if (text.isEmpty() || text.front().category() == QChar::Other_Control)
        return 0;
    return text.front().unicode();
}

} // namespace

PartSearchPane::PartSearchPane(QWidget* parent)
    : QWidget(parent), lblRecherche(new QLabel(this)), txtRecherche(new QLineEdit(this)),
      lblMax(new QLabel(this)), txtMax(new QLineEdit(QStringLiteral("20"), this)),
      lstPieces(new QListWidget(this)), txtRechGroupe(new QLineEdit(QStringLiteral("Code"), this)) {
    lblRecherche->setObjectName(QStringLiteral("lblRecherche"));
    txtRecherche->setObjectName(QStringLiteral("txtRecherche"));
    lblMax->setObjectName(QStringLiteral("lblMax"));
    txtMax->setObjectName(QStringLiteral("txtMax"));
    lstPieces->setObjectName(QStringLiteral("lstPieces"));
    txtRechGroupe->setObjectName(QStringLiteral("txtRechGroupe"));

    // A part line is about 97 characters wide: wider than the pane, so the list scrolls.
    lstPieces->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    lstPieces->setHorizontalScrollBarPolicy(Qt::ScrollBarAsNeeded);
    lstPieces->setUniformItemSizes(true);
    lstPieces->setSelectionMode(QAbstractItemView::SingleSelection);
    txtMax->setMaximumWidth(txtMax->fontMetrics().horizontalAdvance(QStringLiteral("0000000")) +
                            16);
    lblRecherche->setBuddy(txtRecherche);
    lblMax->setBuddy(txtMax);
    // The field only clears the results when its text changes; it has nothing to show.
    txtRechGroupe->hide();

    auto* maxRow = new QHBoxLayout;
    maxRow->addWidget(lblMax);
    maxRow->addWidget(txtMax);
    maxRow->addStretch(1);
    maxRow->addWidget(txtRechGroupe);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(lblRecherche);
    layout->addWidget(txtRecherche);
    layout->addLayout(maxRow);
    layout->addWidget(lstPieces, 1);

    txtRecherche->installEventFilter(this);
    txtMax->installEventFilter(this);
    lstPieces->installEventFilter(this);
    connect(txtRechGroupe, &QLineEdit::textChanged, this, [this] { txtRechGroupeChange(); });
}

void PartSearchPane::setGroupCode(const QString& groupCode) {
    searchPrefix_ = groupCode.trimmed();
    const QString shown =
        searchPrefix_.isEmpty() ? QStringLiteral("    ") : searchPrefix_.rightJustified(4, u' ');
    lblRecherche->setText(LoadText(28) + u'-' + shown);
}

void PartSearchPane::searchParts() {
    lstPieces->clear();
    if (PartSearch::AsksTooMany(txtMax->text()))
        txtMax->setText(QString::number(PartSearch::MaxLines));
    const modNTX::StockSearchOutcome outcome =
        PartSearch::Run(App().PrgPath, searchPrefix_ + txtRecherche->text(), txtMax->text(),
                        [this](const QString& line) { lstPieces->addItem(line); });
    if (!outcome.ok())
        MsgBox(LoadText(79));
    txtRecherche->setFocus(Qt::OtherFocusReason);
    txtRechercheGotFocus();
}

void PartSearchPane::txtRechercheGotFocus() {
    txtRecherche->setSelection(0, int(txtRecherche->text().size()));
}

void PartSearchPane::txtRechercheKeyPress(int& keyAscii) {
    if (keyAscii != KeyEnter)
        return;
    keyAscii = 0;
    searchParts();
}

void PartSearchPane::txtMaxKeyPress(int& keyAscii) {
    if (keyAscii == KeyEnter) {
        keyAscii = 0;
        txtRecherche->setFocus(Qt::OtherFocusReason);
        return;
    }
    if (keyAscii != KeyBackspace && !PartSearch::IsLineCountCharacter(QChar(keyAscii)))
        keyAscii = 0;
}

void PartSearchPane::lstPiecesKeyPress(int& keyAscii) {
    if (keyAscii != KeyEnter)
        return;
    keyAscii = 0;
    txtRecherche->setFocus(Qt::OtherFocusReason);
}

void PartSearchPane::txtRechGroupeChange() {
    lstPieces->clear();
}

bool PartSearchPane::keyPressFor(QObject* watched, int& keyAscii) {
    if (watched == txtRecherche)
        txtRechercheKeyPress(keyAscii);
    else if (watched == txtMax)
        txtMaxKeyPress(keyAscii);
    else if (watched == lstPieces)
        lstPiecesKeyPress(keyAscii);
    return keyAscii == 0;
}

bool PartSearchPane::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::KeyPress) {
        int keyAscii = typedCharacter(*static_cast<QKeyEvent*>(event));
        return keyAscii != 0 && keyPressFor(watched, keyAscii);
    }
    if (event->type() == QEvent::FocusIn && watched == txtRecherche) {
        txtRechercheGotFocus();
        // A click that gave the focus places the cursor after this; select again once it has.
        if (static_cast<QFocusEvent*>(event)->reason() == Qt::MouseFocusReason)
            QTimer::singleShot(0, this, [this] { txtRechercheGotFocus(); });
    }
    return QWidget::eventFilter(watched, event);
}

void PartSearchPane::label() {
    lblRecherche->setText(LoadText(28));
    lblMax->setText(LoadText(83));
}
