#include "app/frmquestion.h"

#include "app/messages.h"

#include <QCheckBox>
#include <QComboBox>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMouseEvent>
#include <QVBoxLayout>

namespace {

const QColor HoverBack(0, 107, 153);
const QColor HoverText(255, 255, 255);
const QColor PlainBack(255, 255, 255);
const QColor PlainText(0, 0, 0);

std::function<QList<Departement>()>& departementSource() {
    static std::function<QList<Departement>()> source;
    return source;
}

void setColours(QLabel* label, const QColor& back, const QColor& text) {
    QPalette palette = label->palette();
    palette.setColor(QPalette::Window, back);
    palette.setColor(QPalette::WindowText, text);
    label->setPalette(palette);
}

QLabel* makeButton(QWidget* parent, const QString& caption) {
    auto* label = new QLabel(caption, parent);
    label->setAlignment(Qt::AlignCenter);
    label->setAutoFillBackground(true);
    label->setMouseTracking(true);
    label->setFrameShape(QFrame::Box);
    label->setMinimumSize(90, 26);
    label->setCursor(Qt::PointingHandCursor);
    return label;
}

} // namespace

frmQuestion::frmQuestion(QWidget* parent) : QDialog(parent) {
    buildControls();
    load();
}

void frmQuestion::buildControls() {
    setMouseTracking(true);
    setAutoFillBackground(true);
    QPalette palette = this->palette();
    palette.setColor(QPalette::Window, PlainBack);
    setPalette(palette);

    lblTitre = new QLabel(this);
    QFont heading = lblTitre->font();
    heading.setBold(true);
    heading.setPointSizeF(heading.pointSizeF() * 1.25);
    lblTitre->setFont(heading);
    lblTitre->setWordWrap(true);
    lblQuestion = new QLabel(this);
    lblQuestion->setWordWrap(true);
    lblEntree = new QLabel(this);
    txtQuestion = new QLineEdit(this);
    lblDepartement = new QLabel(LoadText(13), this);
    cmbDepart = new QComboBox(this);
    chkOption = new QCheckBox(this);
    lblBouton = {makeButton(this, QStringLiteral("OK")), makeButton(this, QString()),
                 makeButton(this, QString())};

    auto* fields = new QGridLayout;
    fields->addWidget(lblEntree, 0, 0);
    fields->addWidget(txtQuestion, 0, 1);
    fields->addWidget(lblDepartement, 1, 0);
    fields->addWidget(cmbDepart, 1, 1);
    fields->setColumnStretch(1, 1);
    auto* buttons = new QHBoxLayout;
    buttons->addStretch();
    for (QLabel* button : lblBouton) {
        button->installEventFilter(this);
        buttons->addWidget(button);
    }
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(lblTitre);
    layout->addWidget(lblQuestion);
    layout->addLayout(fields);
    layout->addWidget(chkOption);
    layout->addSpacing(8);
    layout->addLayout(buttons);
    setMinimumWidth(420);
    resetButtonColours();
}

// What the dialog does each time it is loaded: captions, the heading and the departments.
void frmQuestion::load() {
    setWindowTitle(titreFenetre_.isEmpty() ? LoadText(0) : titreFenetre_);
    lblTitre->setText(titreFenetre_);
    lblQuestion->setText(texteQuestion_);
    lblBouton[1]->setText(LoadText(140));
    lblBouton[2]->setText(LoadText(142));
    lblDepartement->setText(LoadText(13));
    if (departementSource())
        departements_ = departementSource()();
    fillDepartements();
}

// The controls go back to the values they had when the dialog was first made; the answers the
// caller reads afterwards are those initial values. Bouton keeps its last value.
void frmQuestion::unload() {
    txtQuestion->clear();
    lblEntree->clear();
    chkOption->setText(QString());
    chkOption->setChecked(false);
    const QList<QWidget*> optional = {lblEntree, txtQuestion, lblDepartement, cmbDepart, chkOption};
    for (QWidget* control : optional)
        control->setVisible(true);
    resetButtonColours();
    load();
    done(QDialog::Rejected);
}

void frmQuestion::setTitreFenetre(const QString& title) {
    titreFenetre_ = title;
    setWindowTitle(title.isEmpty() ? LoadText(0) : title);
    lblTitre->setText(title);
}

void frmQuestion::setTexteQuestion(const QString& question) {
    texteQuestion_ = question;
    lblQuestion->setText(question);
}

void frmQuestion::setDepartementSource(std::function<QList<Departement>()> source) {
    departementSource() = std::move(source);
}

void frmQuestion::setDepartements(const QList<Departement>& rows) {
    departements_ = rows;
    fillDepartements();
}

void frmQuestion::fillDepartements() {
    cmbDepart->clear();
    for (const Departement& row : departements_)
        cmbDepart->addItem(row.description, row.code);
    cmbDepart->setCurrentIndex(-1);
}

void frmQuestion::selectDepartement(const QString& code) {
    cmbDepart->setCurrentIndex(cmbDepart->findData(code));
}

QString frmQuestion::departement() const {
    return cmbDepart->currentData().toString();
}

void frmQuestion::lblBoutonClick(int index) {
    bouton_ = QString::number(index + 1);
    switch (index) {
    case 0:
        done(QDialog::Accepted);
        break;
    case 1:
        txtQuestion->setText(valeurDefaut_);
        txtQuestion->setFocus();
        break;
    default:
        unload();
        break;
    }
}

void frmQuestion::resetButtonColours() {
    for (QLabel* button : lblBouton)
        setColours(button, PlainBack, PlainText);
}

void frmQuestion::formMouseMove() {
    resetButtonColours();
}

void frmQuestion::lblBoutonMouseMove(int index) {
    resetButtonColours();
    setColours(lblBouton[index], HoverBack, HoverText);
}

void frmQuestion::reject() {
    lblBoutonClick(2);
}

// Activation: the proposed answer goes into the entry box, which takes the focus.
void frmQuestion::showEvent(QShowEvent* event) {
    QDialog::showEvent(event);
    txtQuestion->setText(valeurDefaut_);
    txtQuestion->setFocus();
}

void frmQuestion::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) {
        lblBoutonClick(0);
        return;
    }
    QDialog::keyPressEvent(event);
}

void frmQuestion::mouseMoveEvent(QMouseEvent* event) {
    formMouseMove();
    QDialog::mouseMoveEvent(event);
}

bool frmQuestion::eventFilter(QObject* watched, QEvent* event) {
    for (int i = 0; i < int(lblBouton.size()); ++i) {
        if (watched != lblBouton[i])
            continue;
        if (event->type() == QEvent::MouseMove || event->type() == QEvent::Enter) {
            // Consumed here: passed on, the move would reach the form, which resets the colours.
            lblBoutonMouseMove(i);
            return true;
        }
        if (event->type() == QEvent::MouseButtonRelease) {
            const auto* mouse = static_cast<QMouseEvent*>(event);
            if (mouse->button() == Qt::LeftButton &&
                lblBouton[i]->rect().contains(mouse->position().toPoint()))
                lblBoutonClick(i);
            return true;
        }
    }
    return QDialog::eventFilter(watched, event);
}
