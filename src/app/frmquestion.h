#pragma once

#include <QDialog>
#include <QList>
#include <QString>
#include <array>
#include <functional>

class QCheckBox;
class QComboBox;
class QLabel;
class QLineEdit;

// A department of the dealer: its code (CODEP) and the text the list shows (DESCR).
struct Departement {
    QString code;
    QString description;
};

// The question dialog of the price-list activation: a modal entry box with its own look. The
// caller sets TitreFenetre, TexteQuestion and ValeurDefaut (and the optional controls), shows it
// with exec(), then reads Bouton, txtQuestion, chkOption and departement().
//
// Three labels act as buttons: lblBouton[0] accepts (the dialog hides and keeps its state),
// lblBouton[1] ("Annuler") puts ValeurDefaut back and keeps the dialog open, lblBouton[2]
// ("Abandon") unloads it: the controls return to their initial values, Bouton reads "3".
// Enter is lblBouton[0]; Escape and the window's close box are lblBouton[2].
class frmQuestion : public QDialog {
    Q_OBJECT
    Q_PROPERTY(QString TitreFenetre READ titreFenetre WRITE setTitreFenetre)
    Q_PROPERTY(QString TexteQuestion READ texteQuestion WRITE setTexteQuestion)
    Q_PROPERTY(QString ValeurDefaut READ valeurDefaut WRITE setValeurDefaut)
    Q_PROPERTY(QString Bouton READ bouton)

public:
    explicit frmQuestion(QWidget* parent = nullptr);

    QString titreFenetre() const { return titreFenetre_; }
    void setTitreFenetre(const QString& title);
    QString texteQuestion() const { return texteQuestion_; }
    void setTexteQuestion(const QString& question);
    QString valeurDefaut() const { return valeurDefaut_; }
    void setValeurDefaut(const QString& value) { valeurDefaut_ = value; }
    // "0" before any button, then "1" accept, "2" Annuler, "3" Abandon.
    QString bouton() const { return bouton_; }

    // Where the department list takes its rows at each load (the data store's DEPART table).
    static void setDepartementSource(std::function<QList<Departement>()> source);
    // Fills the department list now with the given rows (also at each later load when no source
    // is set).
    void setDepartements(const QList<Departement>& rows);
    // Preselects the department with this code (none when no row has it).
    void selectDepartement(const QString& code);
    // Code of the department chosen, or an empty text.
    QString departement() const;

    // Event handlers, public so that tests can run them directly.
    void lblBoutonClick(int index);
    void lblBoutonMouseMove(int index);
    void formMouseMove();

    void reject() override;

    QLabel* lblTitre = nullptr;
    QLabel* lblQuestion = nullptr;
    QLabel* lblEntree = nullptr;
    QLineEdit* txtQuestion = nullptr;
    QLabel* lblDepartement = nullptr;
    QComboBox* cmbDepart = nullptr;
    QCheckBox* chkOption = nullptr;
    std::array<QLabel*, 3> lblBouton{};

protected:
    void showEvent(QShowEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void buildControls();
    void load();
    void unload();
    void resetButtonColours();
    void fillDepartements();

    QString titreFenetre_;
    QString texteQuestion_;
    QString valeurDefaut_;
    QString bouton_ = QStringLiteral("0");
    QList<Departement> departements_;
};
