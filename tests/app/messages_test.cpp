#include "app/appstate.h"
#include "app/messages.h"

#include <gtest/gtest.h>

TEST(MessageCatalogue, BothLanguagesKeepTheirExactTexts) {
    ResetAppState();
    App().Settings.Nation = 1000;
    EXPECT_EQ(LoadText(35), QStringLiteral("Désirez-vous quitter Mercantel?"));
    EXPECT_EQ(LoadText(62), QStringLiteral("Nom "));
    EXPECT_EQ(LoadText(69), QStringLiteral("Téléchargement complété à "));
    EXPECT_EQ(LoadText(41), QStringLiteral("Non activés"));

    App().Settings.Nation = 2000;
    EXPECT_EQ(LoadText(35), QStringLiteral("Do you wish to quit Tallyrate ?"));
    EXPECT_EQ(LoadText(41), QStringLiteral(" Deactivated"));
    EXPECT_EQ(LoadText(62), QStringLiteral("Name"));
    EXPECT_EQ(LoadText(0), QStringLiteral("Tallyrate"));
    ResetAppState();
}

TEST(MessageCatalogue, EveryNumberButTheUnusedOnesExistsInBothLanguages) {
    for (int k = 0; k <= 145; ++k) {
        const bool unused = k == 30 || k == 36 || k == 115;
        EXPECT_EQ(MessageCatalogue::contains(1000 + k), !unused) << k;
        EXPECT_EQ(MessageCatalogue::contains(2000 + k), !unused) << k;
    }
    EXPECT_TRUE(MessageCatalogue::text(1034).startsWith(
        QStringLiteral("Communiquez avec Norvale Systems au: ")));
    EXPECT_TRUE(
        MessageCatalogue::text(2034).startsWith(QStringLiteral("Contact Norvale Systems at: ")));
}
