#include "pricelists/frmcatalog.h"

#include "app/messages.h"
#include "app/prompts.h"
#include "data/prixfields.h"
#include "dbase/dberror.h"
#include "dbase/recordset.h"
#include "pricelists/catnorules.h"
#include "pricelists/rowundo.h"
#include "pricelists/runguarded.h"
#include "pricelists/treepanes.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QVBoxLayout>

namespace {

const ErrorHandler FillListErrors{QStringLiteral("ErrFillList: ")};
const ErrorHandler OKButtonErrors{QStringLiteral("errOKButton: ")};

constexpr int Categories = 9;
constexpr int SuggestedWidth = 14; // room for its heading, "Code suggéré"
constexpr int DescriptionWidth = 25;
constexpr int GroupCodeLength = 4;
constexpr int CategoryRole = Qt::UserRole;

// The prompt for a list without a group code; French in both languages.
const QString CodePrompt = QStringLiteral(
    "Veuillez inscrire le code de groupe que vous désirez utiliser. \r\n(Maximum de 4 caractères)");

QString categoryField(const char* family, int category) {
    return QLatin1String(family) + QString::number(category);
}

QString textOf(const Recordset& rs, const QString& field) {
    return rs.value(field).toString().trimmed();
}

// Walks the visible rows of a recordset from the first; the body may save each row.
template <typename Body> void forEachRow(Recordset& rs, Body body) {
    if (rs.recordCount() == 0)
        return;
    for (rs.moveFirst(); !rs.eof(); rs.moveNext())
        body();
}

} // namespace

QString CategoryRowText(const QString& suggested, const QString& description, const QString& used) {
    QString shown = description;
    if (shown.size() > DescriptionWidth)
        shown = shown.left(DescriptionWidth - 1) + QChar(0x2026);
    return suggested.leftJustified(SuggestedWidth) + shown.leftJustified(DescriptionWidth) +
           QStringLiteral("  ") + used.trimmed();
}

frmCatalog::frmCatalog(const ListCommandContext& context, const QString& nodeText,
                       const QString& nodeKey, QWidget* parent)
    : QDialog(parent), context_(context), catalogue_(CatalogueCodeOfKey(nodeKey)) {
    buildControls();
    listFichier_ = context_.shownField(PrixField::Fichier).trimmed();
    listCode_ = context_.shownField(PrixField::CodeGro).trimmed();
    setWindowTitle(context_.shownField(PrixField::Desc));
    lblCat->setText(LoadText(40) + QLatin1Char(' ') + nodeText);
    FillList();
    context_.bindConfig(false);
}

frmCatalog::~frmCatalog() {
    if (!rebound_)
        context_.bindConfig(true);
}

void frmCatalog::buildControls() {
    setObjectName(QStringLiteral("frmCatalog"));
    lblCat = new QLabel(this);
    lblCatgroupe = new QLabel(this);
    lblCatgroupe->setWordWrap(true);
    const QFont fixed = ListTreeFont();
    const QFontMetrics metrics(fixed);
    const auto heading = [&](const QString& caption, int columns) {
        auto* label = new QLabel(caption, this);
        label->setFixedWidth(metrics.horizontalAdvance(QString(columns, QLatin1Char('M'))));
        return label;
    };
    // The headings stand over the columns of the rows, which the fixed-pitch font lines up.
    lblCode1 = heading(QStringLiteral("Code suggéré"), SuggestedWidth);
    lblDesc = heading(QStringLiteral("Description"), DescriptionWidth + 2);
    lblCode2 = new QLabel(QStringLiteral("Code utilisé"), this);
    lstCatgroupe = new QListWidget(this);
    lstCatgroupe->setFont(fixed);
    OKButton = new QPushButton(QStringLiteral("OK"), this);
    OKButton->setEnabled(false);
    CancelButton = new QPushButton(QStringLiteral("Annuler"), this);

    auto* headings = new QHBoxLayout;
    headings->setContentsMargins(lstCatgroupe->frameWidth() + 2, 0, 0, 0);
    headings->setSpacing(0);
    for (QLabel* label : {lblCode1, lblDesc, lblCode2})
        headings->addWidget(label, 0, Qt::AlignBottom);
    headings->addStretch();
    auto* buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(OKButton);
    buttons->addWidget(CancelButton);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(lblCat);
    layout->addWidget(lblCatgroupe);
    layout->addLayout(headings);
    layout->addWidget(lstCatgroupe, 1);
    layout->addLayout(buttons);
    resize(metrics.horizontalAdvance(
               QString(SuggestedWidth + DescriptionWidth + 12, QLatin1Char('M'))),
           380);

    // A row chosen with the mouse or the keyboard; the list's own current row, set when it
    // takes the focus, chooses nothing.
    connect(lstCatgroupe, &QListWidget::itemSelectionChanged, this, [this] {
        const QList<QListWidgetItem*> chosen = lstCatgroupe->selectedItems();
        if (!chosen.isEmpty())
            lstCatgroupeClick(lstCatgroupe->row(chosen.first()));
    });
    connect(OKButton, &QPushButton::clicked, this, &frmCatalog::OKButtonClick);
    connect(CancelButton, &QPushButton::clicked, this, &frmCatalog::CancelButtonClick);
}

// Whatever closes the dialog, the configuration pane is tied to the list recordset again.
void frmCatalog::done(int result) {
    if (!rebound_) {
        context_.bindConfig(true);
        rebound_ = true;
    }
    QDialog::done(result);
}

void frmCatalog::findCatalogue() {
    context_.tables.rsCataList.find(QStringLiteral("[FICHIER] = '%1'").arg(catalogue_), 0,
                                    SearchDirection::Forward, MoveStart::First);
}

void frmCatalog::FillList() {
    lblCatgroupe->setText(LoadText(71) + QStringLiteral("\r\n\r\n") + LoadText(72));
    lstCatgroupe->clear();
    OKButton->setEnabled(false);
    suggested_.fill({});
    descriptions_.fill({});
    used_.fill({});
    Recordset& rs = context_.tables.rsCataList;
    if (RunGuarded(FillListErrors, [&] { findCatalogue(); }) != StepResult::Done || rs.eof())
        return;
    for (int n = 1; n <= Categories; ++n) {
        RunGuarded(FillListErrors, [&] {
            const QString suggested = textOf(rs, categoryField("GR", n));
            if (suggested.isEmpty())
                return;
            suggested_[n - 1] = suggested;
            descriptions_[n - 1] = rs.value(categoryField("GRD", n)).toString();
            used_[n - 1] = textOf(rs, categoryField("GRL", n));
            auto* item = new QListWidgetItem(
                CategoryRowText(suggested, descriptions_[n - 1], used_[n - 1]), lstCatgroupe);
            item->setData(CategoryRole, n);
            item->setToolTip(descriptions_[n - 1]);
        });
    }
}

int frmCatalog::categoryOfRow(int row) const {
    const QListWidgetItem* item = lstCatgroupe->item(row);
    return item ? item->data(CategoryRole).toInt() : 0;
}

void frmCatalog::lstCatgroupeClick(int row) {
    QListWidgetItem* item = lstCatgroupe->item(row);
    if (item && !item->isSelected())
        lstCatgroupe->setCurrentItem(item);
    OKButton->setEnabled(item != nullptr);
}

void frmCatalog::CancelButtonClick() {
    reject();
}

// The list's own code, else the code the dealer types (upper case, as every code is kept),
// else the category's current code.
QString frmCatalog::newCodeFor(const QString& oldCode) {
    if (!listCode_.isEmpty())
        return listCode_;
    const QString typed = InputBox(CodePrompt).trimmed().toUpper();
    return typed.isEmpty() ? oldCode : typed;
}

void frmCatalog::OKButtonClick() {
    const QList<QListWidgetItem*> chosen = lstCatgroupe->selectedItems();
    const int category = chosen.isEmpty() ? 0 : categoryOfRow(lstCatgroupe->row(chosen.first()));
    if (category == 0) {
        accept();
        return;
    }
    const QString oldCode = used_[category - 1];
    const QString newCode = newCodeFor(oldCode);
    if (newCode.size() > GroupCodeLength) {
        // Nothing is written; the dealer chooses again or cancels.
        MsgBox(LoadText(42), Buttons::Ok, Icon::Warning);
        return;
    }
    RowUndo undo;
    try {
        findCatalogue();
        if (oldCode != newCode)
            DissociateGroup(category, oldCode, undo);
        AssociateGroup(category, newCode, undo);
        accept();
    } catch (const DbError& error) {
        // A row changed or held by another workstation: what was written goes back, the
        // dialog shows the tables as they are now, and the dealer may try again.
        undo.undo();
        RunGuarded(OKButtonErrors, [&] {
            context_.tables.rsPrixList.setFilter(QString());
            context_.tables.rsPrixList.requery();
            context_.tables.rsCataList.requery();
        });
        ShowErrorBox(OKButtonErrors, error.number(), error.description());
        FillList();
    }
}

// The lists of the old code (and every list that needs no code) lose the catalogue, unless
// another category of the catalogue still uses the old code.
void frmCatalog::DissociateGroup(int category, const QString& oldCode, RowUndo& undo) {
    Recordset& lists = context_.tables.rsPrixList;
    Recordset& catalogue = context_.tables.rsCataList;
    lists.setFilter(QStringLiteral("[CODEGRO] = '%1' OR [PASOBLIGER] = -1").arg(oldCode));
    const QString selected = categoryField("GRL", category);
    bool usedElsewhere = false;
    for (int n = 1; n <= Categories; ++n)
        usedElsewhere = usedElsewhere ||
                        (n != category && textOf(catalogue, categoryField("GRL", n)) == oldCode);
    forEachRow(lists, [&] {
        const QVariant catno = lists.value(PrixField::CatNo);
        if (!catno.isNull() && !usedElsewhere) {
            const QString kept = RemoveCatnoEntry(catno.toString(), catalogue_);
            if (kept != catno.toString()) {
                undo.set(lists, QStringLiteral("CATNO"), kept);
                lists.update();
            }
        }
        if (!catalogue.value(selected).isNull()) {
            undo.set(catalogue, selected, QVariant());
            catalogue.update();
        }
    });
}

// Every activated list of the new code (the selected list alone when there is no code) gains
// the catalogue, and the category takes the code.
void frmCatalog::AssociateGroup(int category, const QString& newCode, RowUndo& undo) {
    Recordset& lists = context_.tables.rsPrixList;
    Recordset& catalogue = context_.tables.rsCataList;
    lists.setFilter(newCode.isEmpty()
                        ? QStringLiteral("[FICHIER] = '%1'").arg(listFichier_)
                        : QStringLiteral("[CODEGRO] = '%1' AND [UTILISER]=True").arg(newCode));
    const QString selected = categoryField("GRL", category);
    forEachRow(lists, [&] {
        const QVariant catno = lists.value(PrixField::CatNo);
        if (catno.isNull() || !CatnoMentions(catno.toString(), catalogue_)) {
            undo.set(lists, QStringLiteral("CATNO"),
                     AppendCatnoEntry(catno.toString(), catalogue_));
            lists.update();
        }
        if (textOf(catalogue, selected) != newCode ||
            !catalogue.value(QStringLiteral("UTILISER")).toBool()) {
            undo.set(catalogue, selected, newCode);
            undo.set(catalogue, QStringLiteral("UTILISER"), true);
            catalogue.update();
        }
    });
    lists.setFilter(QString());
    lists.requery();
    catalogue.requery();
}
