#include "pricelists/configpane.h"

#include "app/messages.h"

#include <QFocusEvent>
#include <QFontMetrics>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QTimer>
#include <QVBoxLayout>

ConfigField::ConfigField(int index, QWidget* parent) : QLineEdit(parent), index_(index) {
    setObjectName(QStringLiteral("txtConfig%1").arg(index));
}

void ConfigField::type(QChar typed) {
    const ConfigKey key = filter_ ? filter_(this, typed) : ConfigKey{typed, false};
    if (key.moveNext) {
        focusNextChild();
        return;
    }
    if (key.typed.isNull())
        return;
    if (key.typed.unicode() == KeyBackspace)
        backspace();
    else
        insert(QString(key.typed));
}

void ConfigField::keyPressEvent(QKeyEvent* event) {
    const QString text = event->text();
    const bool enter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    const bool backspaceKey = event->key() == Qt::Key_Backspace;
    const bool printable = text.size() == 1 && text.at(0).isPrint() &&
                           !(event->modifiers() & (Qt::ControlModifier | Qt::AltModifier));
    if (!enter && !backspaceKey && !printable) {
        QLineEdit::keyPressEvent(event); // moves, deletion, shortcuts
        return;
    }
    event->accept();
    type(enter ? QChar(KeyEnter) : backspaceKey ? QChar(KeyBackspace) : text.at(0));
}

void ConfigField::focusInEvent(QFocusEvent* event) {
    QLineEdit::focusInEvent(event);
    selectAll();
    // A mouse press would place the cursor again once the focus has moved: select once more
    // when it is over.
    if (event->reason() == Qt::MouseFocusReason)
        QTimer::singleShot(0, this, [this] {
            if (hasFocus())
                selectAll();
        });
}

void ConfigField::focusOutEvent(QFocusEvent* event) {
    QLineEdit::focusOutEvent(event);
    const bool otherWindow =
        event->reason() == Qt::ActiveWindowFocusReason || event->reason() == Qt::PopupFocusReason;
    if (!otherWindow && leave_)
        leave_(this);
}

namespace {

int charWidth(const QWidget* widget, int chars) {
    return QFontMetrics(widget->font()).horizontalAdvance(QLatin1Char('W')) * chars + 12;
}

} // namespace

ConfigPane::ConfigPane(QWidget* parent) : QWidget(parent) {
    setObjectName(QStringLiteral("picConfig"));
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(8, 6, 8, 6);
    lblConfig[PrixField::Desc] = makeLabel(QStringLiteral("lblConfig1"));
    QFont heading = lblConfig[PrixField::Desc]->font();
    heading.setBold(true);
    lblConfig[PrixField::Desc]->setFont(heading);
    layout->addWidget(lblConfig[PrixField::Desc]);

    auto* row = new QHBoxLayout;
    row->setSpacing(16);
    row->addWidget(buildIdentity(), 0, Qt::AlignTop);
    row->addWidget(buildCostLevel(), 0, Qt::AlignTop);
    row->addWidget(buildOptions(), 0, Qt::AlignTop);
    row->addWidget(buildCodes(), 0, Qt::AlignTop);
    row->addWidget(buildSubGroups(0), 0, Qt::AlignTop);
    row->addWidget(buildSubGroups(1), 0, Qt::AlignTop);
    row->addStretch(1);
    layout->addLayout(row);
    layout->addStretch(1);

    // Bound but not shown: the cost level is shown through optDe.
    makeField(PrixField::CoutDe, 4)->hide();
}

namespace {

// The fields that have no caption in the catalogue go by their names in the table, the same in
// both languages.
const std::pair<int, const char*> NamedFields[] = {{PrixField::CodeNvc, "CODENVC"},
                                                   {PrixField::CodeUni, "CODEUNI"},
                                                   {PrixField::CodeAck, "CODEACK"},
                                                   {PrixField::CodeUap, "CODEUAP"},
                                                   {PrixField::Pct3, "PCT3"}};

} // namespace

// The list's four codes, digits only like the other numeric fields.
QWidget* ConfigPane::buildCodes() {
    auto* box = new QWidget(this);
    auto* grid = new QGridLayout(box);
    grid->setContentsMargins(0, 0, 0, 0);
    grid->setVerticalSpacing(4);
    for (int field = PrixField::CodeNvc; field <= PrixField::CodeUap; ++field)
        addCaptionedField(grid, field - PrixField::CodeNvc, field, 6);
    return box;
}

void ConfigPane::addCaptionedField(QGridLayout* grid, int line, int field, int chars) {
    QLabel* caption = makeLabel(QStringLiteral("lblConfig%1").arg(field));
    lblConfig[field] = caption;
    ConfigField* box = makeField(field, chars);
    caption->setBuddy(box);
    grid->addWidget(caption, line, 0);
    grid->addWidget(box, line, 1, Qt::AlignLeft);
}

ConfigField* ConfigPane::makeField(int index, int chars) {
    auto* field = new ConfigField(index, this);
    field->setFixedWidth(charWidth(field, chars));
    txtConfig[index] = field;
    return field;
}

QLabel* ConfigPane::makeLabel(const QString& name) {
    auto* label = new QLabel(this);
    label->setObjectName(name);
    label->setTextFormat(Qt::PlainText);
    return label;
}

QWidget* ConfigPane::buildIdentity() {
    auto* box = new QWidget(this);
    auto* grid = new QGridLayout(box);
    grid->setContentsMargins(0, 0, 0, 0);
    grid->setVerticalSpacing(4);
    const struct {
        int field;
        int chars;
    } rows[] = {{PrixField::CodeGro, 5},  {PrixField::FicFamille, 9}, {PrixField::Fournis, 18},
                {PrixField::Departem, 0}, {PrixField::DateEff, 8},    {PrixField::DateStk, 8}};
    int line = 0;
    for (const auto& r : rows) {
        if (r.field != PrixField::Departem) {
            addCaptionedField(grid, line++, r.field, r.chars);
            continue;
        }
        QLabel* caption = makeLabel(QStringLiteral("lblConfig%1").arg(r.field));
        lblConfig[r.field] = caption;
        cmbDepart = new QComboBox(box);
        cmbDepart->setObjectName(QStringLiteral("cmbDepart"));
        cmbDepart->setMinimumWidth(charWidth(cmbDepart, 12));
        caption->setBuddy(cmbDepart);
        grid->addWidget(caption, line, 0);
        grid->addWidget(cmbDepart, line++, 1, Qt::AlignLeft);
    }
    return box;
}

QWidget* ConfigPane::buildCostLevel() {
    auto* box = new QWidget(this);
    auto* column = new QVBoxLayout(box);
    column->setContentsMargins(0, 0, 0, 0);
    fraCoutant = new QGroupBox(box);
    fraCoutant->setObjectName(QStringLiteral("fraCoutant"));
    auto* options = new QVBoxLayout(fraCoutant);
    for (int k = 0; k < 3; ++k) {
        optDe[k] = new QRadioButton(fraCoutant);
        optDe[k]->setObjectName(QStringLiteral("optDe%1").arg(k));
        options->addWidget(optDe[k]);
    }
    column->addWidget(fraCoutant);

    lblCOUTPCT = makeLabel(QStringLiteral("lblCOUTPCT"));
    column->addWidget(lblCOUTPCT);
    column->addWidget(makeField(PrixField::CoutPct, 6));

    fraApp = new QGroupBox(box);
    fraApp->setObjectName(QStringLiteral("fraApp"));
    auto* grid = new QGridLayout(fraApp);
    for (int k = 0; k < 2; ++k) {
        lblPCT[k] = makeLabel(QStringLiteral("lblPCT%1").arg(k));
        grid->addWidget(lblPCT[k], k, 0);
        grid->addWidget(makeField(PrixField::Pct1 + k, 6), k, 1);
    }
    addCaptionedField(grid, 2, PrixField::Pct3, 6);
    column->addWidget(fraApp);
    return box;
}

QWidget* ConfigPane::buildOptions() {
    auto* box = new QWidget(this);
    auto* grid = new QGridLayout(box);
    grid->setContentsMargins(0, 8, 0, 0);
    for (int k = 0; k < 3; ++k) {
        chkCH[k] = new QCheckBox(box);
        chkCH[k]->setObjectName(QStringLiteral("chkCH%1").arg(k));
        lblCH[k] = makeLabel(QStringLiteral("lblCH%1").arg(k));
        lblCH[k]->setBuddy(chkCH[k]);
        grid->addWidget(chkCH[k], k, 0);
        grid->addWidget(lblCH[k], k, 1);
    }
    return box;
}

// Five sub-groups per column: column 0 holds SGR1 to SGR5, column 1 SGR6 to SGR10.
QWidget* ConfigPane::buildSubGroups(int column) {
    auto* box = new QWidget(this);
    auto* grid = new QGridLayout(box);
    grid->setContentsMargins(0, 0, 0, 0);
    grid->setVerticalSpacing(3);
    lblGroupes[column] = makeLabel(QStringLiteral("lblGroupes%1").arg(column));
    lblSGRPCT[column] = makeLabel(QStringLiteral("lblSGRPCT%1").arg(column));
    grid->addWidget(lblGroupes[column], 0, 0);
    grid->addWidget(lblSGRPCT[column], 0, 1);
    for (int line = 0; line < 5; ++line) {
        const int code = PrixField::FirstSubGroup + 2 * (5 * column + line);
        grid->addWidget(makeField(code, 9), line + 1, 0);
        grid->addWidget(makeField(code + 1, 5), line + 1, 1);
    }
    return box;
}

void ConfigPane::label() {
    labelFields();
    labelFrames();
}

void ConfigPane::labelFields() {
    const std::pair<int, int> captions[] = {{PrixField::CodeGro, 10},  {PrixField::FicFamille, 63},
                                            {PrixField::DateEff, 11},  {PrixField::DateStk, 12},
                                            {PrixField::Departem, 13}, {PrixField::Fournis, 14}};
    for (const auto& [field, message] : captions)
        lblConfig[field]->setText(LoadText(message));
    for (const auto& [field, name] : NamedFields)
        lblConfig[field]->setText(QLatin1String(name));
}

void ConfigPane::labelFrames() {
    fraApp->setTitle(LoadText(113));
    for (int k = 0; k < 3; ++k)
        lblCH[k]->setText(LoadText(16 + k));
    for (int k = 0; k < 2; ++k)
        lblPCT[k]->setText(LoadText(19 + k));
    fraCoutant->setTitle(LoadText(21));
    for (int k = 0; k < 3; ++k)
        optDe[k]->setText(LoadText(22 + k));
    lblCOUTPCT->setText(LoadText(25));
    for (int k = 0; k < 2; ++k)
        lblGroupes[k]->setText(LoadText(26));
    for (int k = 0; k < 2; ++k)
        lblSGRPCT[k]->setText(LoadText(27));
}

int ConfigPane::fieldIndexOf(const QWidget* widget) const {
    for (int i = 0; widget && i < FieldCount; ++i)
        if (txtConfig[i] == widget)
            return i;
    return -1;
}

int ConfigPane::checkIndexOf(const QWidget* widget) const {
    for (int k = 0; widget && k < 3; ++k)
        if (chkCH[k] == widget)
            return k;
    return -1;
}
