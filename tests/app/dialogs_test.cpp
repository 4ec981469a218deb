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
#include <QMouseEvent>
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

void moveMouseOver(QWidget* widget) {
    QMouseEvent move(QEvent::MouseMove, QPointF(2, 2), widget->mapToGlobal(QPointF(2, 2)),
                     Qt::NoButton, Qt::NoButton, Qt::NoModifier);
    QApplication::sendEvent(widget, &move);
}

QColor background(QLabel* label) {
    return label->palette().color(QPalette::Window);
}
QColor foreground(QLabel* label) {
    return label->palette().color(QPalette::WindowText);
}

class QuestionTest : public ::testing::Test {
protected:
    void SetUp() override {
        ResetAppState();
        frmQuestion::setDepartementSource([] {
            return QList<Departement>{{"F", "Fournitures"}, {"M", "Mécanique"}};
        });
        dialog = std::make_unique<frmQuestion>();
        dialog->setTitreFenetre(QStringLiteral("Liste Bosch"));
        dialog->setTexteQuestion(QStringLiteral("\r\nVeuillez inscrire le nom de la matrice."));
        dialog->setValeurDefaut(QStringLiteral("MATBOS"));
    }
    void TearDown() override {
        dialog.reset();
        frmQuestion::setDepartementSource({});
    }

    std::unique_ptr<frmQuestion> dialog;
};

} // namespace

TEST_F(QuestionTest, AcceptingHidesTheDialogAndKeepsItsAnswers) {
    EXPECT_EQ(dialog->bouton(), QStringLiteral("0"));
    EXPECT_EQ(dialog->lblTitre->text(), QStringLiteral("Liste Bosch"));
    dialog->chkOption->setChecked(true);
    dialog->selectDepartement(QStringLiteral("M"));

    EXPECT_EQ(execWith(*dialog, [this] { dialog->lblBoutonClick(0); }), QDialog::Accepted);
    EXPECT_FALSE(dialog->isVisible());
    EXPECT_EQ(dialog->bouton(), QStringLiteral("1"));
    EXPECT_EQ(dialog->txtQuestion->text(), QStringLiteral("MATBOS"));
    EXPECT_TRUE(dialog->chkOption->isChecked());
    EXPECT_EQ(dialog->departement(), QStringLiteral("M"));

    // Shown again: the entry box takes the new proposal; Enter accepts what was typed.
    dialog->setValeurDefaut(QStringLiteral("AB"));
    execWith(*dialog, [this] {
        EXPECT_EQ(dialog->txtQuestion->text(), QStringLiteral("AB"));
        QTest::keyClicks(dialog->txtQuestion, QStringLiteral("C"));
        QTest::keyClick(dialog->txtQuestion, Qt::Key_Return);
    });
    EXPECT_EQ(dialog->bouton(), QStringLiteral("1"));
    EXPECT_EQ(dialog->txtQuestion->text(), QStringLiteral("ABC"));
}

TEST_F(QuestionTest, AnnulerPutsTheProposalBackAndStaysOpen) {
    bool stillOpen = false;
    execWith(*dialog, [&] {
        dialog->txtQuestion->setText(QStringLiteral("typed"));
        dialog->lblBoutonClick(1);
        stillOpen = dialog->isVisible();
        EXPECT_EQ(dialog->bouton(), QStringLiteral("2"));
        EXPECT_EQ(dialog->txtQuestion->text(), QStringLiteral("MATBOS"));
        dialog->lblBoutonClick(0);
    });
    EXPECT_TRUE(stillOpen);
    EXPECT_EQ(dialog->bouton(), QStringLiteral("1"));
}

TEST_F(QuestionTest, AbandonUnloadsAndLeavesOnlyInitialValues) {
    for (const auto& abandon : std::vector<std::function<void(frmQuestion&)>>{
             [](frmQuestion& d) { d.lblBoutonClick(2); },
             [](frmQuestion& d) { QTest::keyClick(d.txtQuestion, Qt::Key_Escape); },
             [](frmQuestion& d) { d.close(); }}) {
        dialog->lblEntree->setText(QStringLiteral("Matrice"));
        dialog->chkOption->setText(LoadText(144));
        dialog->chkOption->setChecked(true);
        dialog->cmbDepart->setVisible(false);
        dialog->selectDepartement(QStringLiteral("F"));
        execWith(*dialog, [&] {
            dialog->txtQuestion->setText(QStringLiteral("typed"));
            abandon(*dialog);
        });
        EXPECT_FALSE(dialog->isVisible());
        EXPECT_EQ(dialog->bouton(), QStringLiteral("3"));
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
    const QColor plain = background(dialog->lblBouton[0]);
    const auto highlighted = [this, plain] {
        QList<int> lit;
        for (int i = 0; i < 3; ++i)
            if (background(dialog->lblBouton[i]) != plain)
                lit << i;
        return lit;
    };
    moveMouseOver(dialog->lblBouton[1]);
    EXPECT_EQ(highlighted(), QList<int>{1});
    EXPECT_NE(foreground(dialog->lblBouton[1]), foreground(dialog->lblBouton[0]));
    moveMouseOver(dialog->lblBouton[2]);
    EXPECT_EQ(highlighted(), QList<int>{2});
    moveMouseOver(dialog.get());
    EXPECT_TRUE(highlighted().isEmpty());
    EXPECT_EQ(foreground(dialog->lblBouton[1]), foreground(dialog->lblBouton[0]));
    // A click on a label button is a click of that button.
    QTest::mouseClick(dialog->lblBouton[1], Qt::LeftButton);
    EXPECT_EQ(dialog->bouton(), QStringLiteral("2"));
    dialog->hide();
}

TEST(ErrorAndReportWindows, ShowTheirTextsAndCloseOnOK) {
    ResetAppState();
    App().ErrorText = QStringLiteral("Conversion: table PRIXLIST verrouillée");
    App().ContactLine = QStringLiteral("Communiquez avec Norvale Systems au: 1-800-555-0199");
    frmErrMsg error;
    EXPECT_EQ(error.lblMessage->text(), App().ErrorText + "\r\n" + App().ContactLine);
    bool survivedEscape = false;
    const int result = execWith(error, [&] {
        QTest::keyClick(&error, Qt::Key_Escape);
        survivedEscape = error.isVisible();
        error.cmdOK->click();
    });
    EXPECT_TRUE(survivedEscape);
    EXPECT_EQ(result, QDialog::Accepted);

    frmRapport report(
        QStringLiteral("14:32:05> Liste Bosch réussie\r\n--- Fin du rapport ---\r\n"));
    EXPECT_EQ(report.txtRapport->toPlainText(),
              QStringLiteral("14:32:05> Liste Bosch réussie\n--- Fin du rapport ---\n"));
    EXPECT_TRUE(report.txtRapport->isReadOnly());
    EXPECT_EQ(execWith(report, [&] { report.cmdOK->click(); }), QDialog::Accepted);
    ResetAppState();
}
