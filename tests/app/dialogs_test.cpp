#include "app/appstate.h"
#include "app/frmerrmsg.h"
#include "app/frmoptions.h"
#include "app/frmquestion.h"
#include "app/frmrapport.h"
#include "app/hiddenstrings.h"
#include "app/messages.h"

#include "scriptedprompter.h"
#include "tempinstall.h"

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

class OptionsTest : public ::testing::Test {
protected:
    void SetUp() override {
        ResetAppState();
        AppState& app = App();
        app.Settings.Nation = 1000;
        app.Settings.IP = "maj.concession.example";
        app.Settings.Port = 2101;
        app.Settings.Selection = 1;
        app.DataPath = install.dir("NVNV");
        install.write(app.DataPath + HiddenString(17));
        // A second data directory the dealer may move to.
        other.write(other.dir("NVNV") + HiddenString(17));
    }
    void TearDown() override { ResetAppState(); }

    // Shows the dialog as the dealer sees it, active, with the focus in the directory box.
    void showWithFocusInDirectory(frmOptions& dialog) {
        dialog.show();
        QApplication::setActiveWindow(&dialog);
        ASSERT_TRUE(QTest::qWaitForWindowActive(&dialog));
        dialog.txtRepTravail->setFocus(Qt::MouseFocusReason);
        ASSERT_EQ(QApplication::focusWidget(), dialog.txtRepTravail);
    }

    TempInstall install;
    TempInstall other;
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

// Default fills the server boxes and Cancel keeps nothing: the next dialog shows the settings
// as they were. OK applies every box; English chosen, the next dialog speaks English.
TEST_F(OptionsTest, ShowsTheSettingsAndAppliesEveryBoxOnOkOnly) {
    App().Settings.Port = static_cast<qint16>(40000); // kept under its 16-bit pattern
    {
        frmOptions cancelled;
        cancelled.cmdDefaultClick();
        EXPECT_EQ(cancelled.txtIP->text(), "maj.norvale.example");
        EXPECT_EQ(cancelled.txtPort->text(), "2001");
        cancelled.cmbLangue->setCurrentIndex(1);
        cancelled.chkSauve->setChecked(true);
        cancelled.cmdCancelClick();
        EXPECT_EQ(cancelled.result(), QDialog::Rejected);
    }
    frmOptions dialog;
    EXPECT_EQ(dialog.cmbLangue->itemText(0), "Français");
    EXPECT_EQ(dialog.cmbLangue->currentIndex(), 0);
    EXPECT_EQ(dialog.txtRepTravail->text(), App().DataPath);
    EXPECT_EQ(dialog.txtIP->text(), "maj.concession.example");
    EXPECT_EQ(dialog.txtPort->text(), "40000");
    EXPECT_TRUE(dialog.chkSelection->isChecked());
    EXPECT_FALSE(dialog.chkSauve->isChecked());

    dialog.cmbLangue->setCurrentIndex(1);
    // Typed without its final separator: kept with it, so that names can be appended.
    const QString otherData = other.dir("NVNV");
    dialog.txtRepTravail->setText(otherData.chopped(1));
    dialog.chkSelection->setChecked(false);
    dialog.chkSauve->setChecked(true);
    dialog.txtIP->setText(" 10.0.0.7 ");
    dialog.txtPort->setText("65535");
    dialog.cmdOKClick();

    const AppState& app = App();
    EXPECT_EQ(dialog.result(), QDialog::Accepted);
    EXPECT_EQ(app.Settings.Nation, 2000);
    EXPECT_EQ(app.DataPath, otherData);
    EXPECT_EQ(app.Settings.Selection, 0);
    EXPECT_EQ(app.Settings.Format, 1);
    EXPECT_EQ(app.Settings.IP, "10.0.0.7");
    EXPECT_EQ(static_cast<quint16>(app.Settings.Port), 65535);

    frmOptions again;
    EXPECT_EQ(again.cmbLangue->currentIndex(), 1);
    EXPECT_EQ(again.chkSauve->text(), "Save layout when quitting");
}

TEST_F(OptionsTest, AWrongPortOrNoHostIsRefusedAndNothingIsSaved) {
    for (const auto& [port, host] :
         {std::pair{"0", "h"}, {"65536", "h"}, {"20x1", "h"}, {"2101", "   "}}) {
        frmOptions dialog;
        showWithFocusInDirectory(dialog);
        dialog.cmbLangue->setCurrentIndex(1);
        dialog.txtPort->setText(QString::fromLatin1(port));
        dialog.txtIP->setText(QString::fromLatin1(host));
        const bool portRefused = dialog.txtPort->text() != u"2101";
        ScriptedPrompter prompts;
        prompts.expectMessage(portRefused ? "Port invalide. Inscrivez un nombre de 1 à 65535."
                                          : "Inscrivez l'adresse du serveur de mise à jour.");
        dialog.cmdOKClick();
        EXPECT_EQ(QApplication::focusWidget(),
                  portRefused ? static_cast<QWidget*>(dialog.txtPort) : dialog.txtIP);
    }
    EXPECT_EQ(App().Settings.Nation, 1000);
}

// The directory is checked as the focus really moves: by Tab, by a click on another box, by a
// click on OK (press and release arriving together), by Enter. Each time the message comes
// once and the focus is back in the box; Cancel leaves without a word.
TEST_F(OptionsTest, AWrongDirectoryKeepsTheFocusUntilCorrectedOrCancelled) {
    frmOptions dialog;
    showWithFocusInDirectory(dialog);
    dialog.txtRepTravail->setText(install.dir("NVGL"));
    ScriptedPrompter prompts;

    const std::function<void()> leaving[] = {
        [&] { QTest::keyClick(dialog.txtRepTravail, Qt::Key_Tab); },
        [&] {
            QTest::mousePress(dialog.txtIP, Qt::LeftButton);
            QApplication::processEvents();
            QTest::mouseRelease(dialog.txtIP, Qt::LeftButton);
        },
        [&] { QTest::mouseClick(dialog.cmdOK, Qt::LeftButton); },
        [&] { QTest::keyClick(dialog.txtRepTravail, Qt::Key_Return); }};
    for (const auto& leave : leaving) {
        prompts.expectMessage("Répertoire invalide.");
        leave();
        QApplication::processEvents();
        EXPECT_TRUE(prompts.done());
        EXPECT_TRUE(dialog.isVisible());
        EXPECT_EQ(QApplication::focusWidget(), dialog.txtRepTravail);
    }
    EXPECT_EQ(App().DataPath, install.dir("NVNV"));

    // Corrected: the focus moves on freely.
    dialog.txtRepTravail->setText(other.dir("NVNV"));
    QTest::keyClick(dialog.txtRepTravail, Qt::Key_Tab);
    QApplication::processEvents();
    EXPECT_NE(QApplication::focusWidget(), dialog.txtRepTravail);

    // Wrong again, then Cancel: no message, nothing applied.
    dialog.txtRepTravail->setFocus(Qt::MouseFocusReason);
    dialog.txtRepTravail->setText("/nowhere/");
    QTest::mousePress(dialog.cmdCancel, Qt::LeftButton);
    QApplication::processEvents();
    QTest::mouseRelease(dialog.cmdCancel, Qt::LeftButton);
    QApplication::processEvents();
    EXPECT_EQ(dialog.result(), QDialog::Rejected);
}
