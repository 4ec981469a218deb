#include "app/appstate.h"
#include "app/messages.h"
#include "app/prompts.h"

#include <QAbstractButton>
#include <QApplication>
#include <QMessageBox>
#include <QTimer>
#include <gtest/gtest.h>

namespace {

// The buttons of the next message box, as the dealer sees them; the box is then cancelled.
QStringList buttonsOfABox() {
    QStringList texts;
    QTimer::singleShot(0, [&texts] {
        auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
        if (!box)
            return;
        for (QAbstractButton* button : box->buttons())
            texts << button->text().remove(u'&');
        box->button(QMessageBox::Cancel)->click();
    });
    MsgBox(QStringLiteral("?"), Buttons::YesNoCancel);
    texts.sort();
    return texts;
}

} // namespace

// The texts keep their blanks; a language base without texts falls back on French.
TEST(MessageCatalogue, TheLanguageBaseChoosesTheTextsAsStored) {
    ResetAppState();
    App().Settings.Nation = 1000;
    EXPECT_EQ(LoadText(62), QStringLiteral("Nom "));
    App().Settings.Nation = 3000;
    EXPECT_EQ(LoadText(35), QStringLiteral("Désirez-vous quitter Mercantel?"));
    ResetAppState();
}

TEST(MessageCatalogue, QtsOwnButtonsSpeakTheChosenLanguage) {
    Prompter* scripted = SetPrompter(nullptr); // the boxes the dealer sees
    App().Settings.Nation = 1000;
    LoadQtTranslations();
    EXPECT_EQ(buttonsOfABox(), QStringList({"Annuler", "Non", "Oui"}));
    App().Settings.Nation = 2000;
    LoadQtTranslations();
    EXPECT_EQ(buttonsOfABox(), QStringList({"Cancel", "No", "Yes"}));
    SetPrompter(scripted);
    ResetAppState();
}
