#pragma once

// The configuration pane picConfig (second information tab): one text box per PRIXLIST field
// it edits, txtConfig(i) for field i with its caption lblConfig(i), the cost-level options,
// the three options, the department list and the ten sub-groups. Widgets only: the binding to
// the current PRIXLIST row is BindConfig's, the rules are ConfigEditor's.

#include "pricelists/configrules.h"

#include <QCheckBox>
#include <QComboBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QRadioButton>
#include <QWidget>
#include <array>
#include <functional>

// A text box of the pane, tied to the PRIXLIST field whose ordinal is its index.
class ConfigField : public QLineEdit {
    Q_OBJECT
public:
    ConfigField(int index, QWidget* parent);
    int index() const { return index_; }

    // Decides what a typed character becomes; unset, characters are typed as they come.
    using KeyFilter = std::function<ConfigKey(ConfigField* field, QChar typed)>;
    void setKeyFilter(KeyFilter filter) { filter_ = std::move(filter); }
    // Types one character as the keyboard would, through the filter (Enter and backspace too).
    void type(QChar typed);
    // Runs when the focus leaves the field for another control of the window (not when another
    // window takes it): what was typed is committed there.
    void setLeaveHandler(std::function<void(ConfigField*)> handler) { leave_ = std::move(handler); }

protected:
    void keyPressEvent(QKeyEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;

private:
    int index_;
    KeyFilter filter_;
    std::function<void(ConfigField*)> leave_;
};

class ConfigPane : public QWidget {
    Q_OBJECT
public:
    static constexpr int FieldCount = PrixField::Count;

    explicit ConfigPane(QWidget* parent = nullptr);

    // Captions, in the order the main window sets them: labelFields() gives the lblConfig
    // captions, labelFrames() the frames, options and column headings; label() does both.
    void label();
    void labelFields();
    void labelFrames();

    // Index of a text box (or a check box) of the pane, or -1 for any other widget.
    int fieldIndexOf(const QWidget* widget) const;
    int checkIndexOf(const QWidget* widget) const;

    // txtConfig[i] edits PRIXLIST field i; null where the pane has no text box.
    std::array<ConfigField*, FieldCount> txtConfig{};
    std::array<QLabel*, FieldCount> lblConfig{};
    QGroupBox* fraCoutant = nullptr;
    std::array<QRadioButton*, 3> optDe{};
    QLabel* lblCOUTPCT = nullptr;
    QGroupBox* fraApp = nullptr;
    std::array<QLabel*, 2> lblPCT{};
    std::array<QCheckBox*, 3> chkCH{};
    std::array<QLabel*, 3> lblCH{};
    std::array<QLabel*, 2> lblGroupes{};
    std::array<QLabel*, 2> lblSGRPCT{};
    QComboBox* cmbDepart = nullptr;

private:
    ConfigField* makeField(int index, int chars);
    QLabel* makeLabel(const QString& name);
    QWidget* buildIdentity();
    QWidget* buildCodes();
    void addCaptionedField(QGridLayout* grid, int line, int field, int chars);
    QWidget* buildCostLevel();
    QWidget* buildOptions();
    QWidget* buildSubGroups(int column);
};
