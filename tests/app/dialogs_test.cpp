#include "app/appstate.h"
#include "app/frmerrmsg.h"
#include "app/frmquestion.h"
#include "app/frmrapport.h"
#include "app/messages.h"

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTest>
#include <QTimer>
#include <functional>
#include <gtest/gtest.h>

namespace {

// Shows the dialog modally and runs the action once it is up, as the user would act on it.
int execWith(QDialog& dialog, std::function<void()> action) {
    QTimer::singleShot(0, &dialog, std::move(action));
    return dialog.exec();
}

class QuestionTest : public ::testing::Test {
protected:
    void SetUp() override {
        ResetAppState();
        frmQuestion::setDepartementSource([] {
            return QList<Departement>{{"F", "Fournitures"}, {"M", "Mécanique"}};
        });
        dialog = std::make_unique<frmQuestion>();
        dialog->setTitreFenetre("Liste Bosch");
        dialog->setTexteQuestion("\r\nVeuillez inscrire le nom de la matrice.");
        dialog->setValeurDefaut("MATBOS");
    }
    void TearDown() override {
        dialog.reset();
        frmQuestion::setDepartementSource({});
    }

    std::unique_ptr<frmQuestion> dialog;
};

} // namespace

// Annuler puts the proposal back and leaves the dialog open; OK hides it and keeps the answers.
TEST_F(QuestionTest, AnnulerPutsTheProposalBackAndOkKeepsTheAnswers) {
    EXPECT_EQ(dialog->bouton(), "0");
    EXPECT_EQ(dialog->lblTitre->text(), "Liste Bosch");
    dialog->chkOption->setChecked(true);
    dialog->selectDepartement("M");
    const int result = execWith(*dialog, [this] {
        dialog->txtQuestion->setText("typed");
        dialog->lblBoutonClick(1);
        EXPECT_TRUE(dialog->isVisible());
        EXPECT_EQ(dialog->bouton(), "2");
        EXPECT_EQ(dialog->txtQuestion->text(), "MATBOS");
        dialog->lblBoutonClick(0);
    });
    EXPECT_EQ(result, QDialog::Accepted);
    EXPECT_EQ(dialog->bouton(), "1");
    EXPECT_EQ(dialog->txtQuestion->text(), "MATBOS");
    EXPECT_TRUE(dialog->chkOption->isChecked());
    EXPECT_EQ(dialog->departement(), "M");

    // Shown again: the entry box takes the new proposal; Enter accepts what was typed.
    dialog->setValeurDefaut("AB");
    execWith(*dialog, [this] {
        EXPECT_EQ(dialog->txtQuestion->text(), "AB");
        QTest::keyClicks(dialog->txtQuestion, "C");
        QTest::keyClick(dialog->txtQuestion, Qt::Key_Return);
    });
    EXPECT_EQ(dialog->bouton(), "1");
    EXPECT_EQ(dialog->txtQuestion->text(), "ABC");
}

TEST_F(QuestionTest, AbandonUnloadsAndLeavesOnlyInitialValues) {
    for (const auto& abandon : std::vector<std::function<void(frmQuestion&)>>{
             [](frmQuestion& d) { d.lblBoutonClick(2); },
             [](frmQuestion& d) { QTest::keyClick(d.txtQuestion, Qt::Key_Escape); },
             [](frmQuestion& d) { d.close(); }}) {
        dialog->lblEntree->setText("Matrice");
        dialog->chkOption->setChecked(true);
        dialog->cmbDepart->setVisible(false);
        dialog->selectDepartement("F");
        execWith(*dialog, [&] {
            dialog->txtQuestion->setText("typed");
            abandon(*dialog);
        });
        EXPECT_FALSE(dialog->isVisible());
        EXPECT_EQ(dialog->bouton(), "3");
        EXPECT_EQ(dialog->txtQuestion->text(), QString());
        EXPECT_EQ(dialog->lblEntree->text(), QString());
        EXPECT_FALSE(dialog->chkOption->isChecked());
        EXPECT_EQ(dialog->departement(), QString());
        EXPECT_FALSE(dialog->cmbDepart->isHidden());
        EXPECT_EQ(dialog->cmbDepart->count(), 2) << "the departments are read again";
    }
}

TEST_F(QuestionTest, OnlyTheButtonUnderTheMouseIsHighlighted) {
    dialog->show();
    const QPalette plain = dialog->lblBouton[0]->palette();
    const auto highlighted = [&] {
        QList<int> lit;
        for (int i = 0; i < 3; ++i)
            if (dialog->lblBouton[i]->palette() != plain)
                lit << i;
        return lit;
    };
    QTest::mouseMove(dialog->lblBouton[1]);
    EXPECT_EQ(highlighted(), QList<int>{1});
    EXPECT_NE(dialog->lblBouton[1]->palette().color(QPalette::Window),
              plain.color(QPalette::Window));
    EXPECT_NE(dialog->lblBouton[1]->palette().color(QPalette::WindowText),
              plain.color(QPalette::WindowText));
    QTest::mouseMove(dialog->lblBouton[2]);
    EXPECT_EQ(highlighted(), QList<int>{2});
    QTest::mouseMove(dialog.get(), QPoint(2, 2));
    EXPECT_TRUE(highlighted().isEmpty());
    // A click on a label button is a click of that button.
    QTest::mouseClick(dialog->lblBouton[1], Qt::LeftButton);
    EXPECT_EQ(dialog->bouton(), "2");
}

TEST(ErrorAndReportWindows, ShowTheirTextsAndCloseOnOK) {
    ResetAppState();
    App().ErrorText = "Conversion: table PRIXLIST verrouillée";
    App().ContactLine = "Communiquez avec Norvale Systems au: 1-800-555-0199";
    frmErrMsg error;
    EXPECT_EQ(error.lblMessage->text(), App().ErrorText + "\r\n" + App().ContactLine);
    const int result = execWith(error, [&] {
        QTest::keyClick(&error, Qt::Key_Escape);
        EXPECT_TRUE(error.isVisible());
        error.cmdOK->click();
    });
    EXPECT_EQ(result, QDialog::Accepted);

    frmRapport report("Liste Bosch réussie\r\n");
    EXPECT_EQ(report.txtRapport->toPlainText(), "Liste Bosch réussie\n");
    EXPECT_TRUE(report.txtRapport->isReadOnly());
    EXPECT_EQ(execWith(report, [&] { report.cmdOK->click(); }), QDialog::Accepted);
    ResetAppState();
}
