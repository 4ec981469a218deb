#include "app/appstate.h"
#include "app/frmoptions.h"
#include "app/hiddenstrings.h"
#include "scriptedprompter.h"
#include "tempinstall.h"

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>
#include <functional>
#include <gtest/gtest.h>

namespace {

class OptionsTest : public ::testing::Test {
protected:
    void SetUp() override {
        ResetAppState();
        AppState& app = App();
        app.Settings.Nation = 1000;
        app.Settings.IP = "maj.concession.example";
        app.Settings.Port = 2101;
        app.Settings.Selection = 1;
        app.Settings.Format = 0;
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
    EXPECT_EQ(dialog.cmbLangue->count(), 2);
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
    again.txtRepTravail->setText("/nowhere/NVNV/");
    ScriptedPrompter prompts;
    prompts.expectMessage("Invalid index.");
    again.cmdOKClick();
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
    EXPECT_FALSE(dialog.isVisible());
    EXPECT_EQ(dialog.result(), QDialog::Rejected);
    EXPECT_EQ(App().DataPath, install.dir("NVNV"));
}

} // namespace
