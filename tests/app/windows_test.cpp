#include "app/appstate.h"
#include "app/frmsplash.h"
#include "app/mdifrmmain.h"

#include <QApplication>
#include <QLabel>
#include <gtest/gtest.h>

// The splash and the frame carry the product name of the language with the version; the
// boxes shown without a title of their own then read the product name.
TEST(StartWindows, SplashAndFrameNameTheProductAndItsVersion) {
    ResetAppState();
    App().Settings.Nation = 1000;
    {
        frmSplash splash;
        EXPECT_EQ(QApplication::applicationName(),
                  QStringLiteral("Mercantel Version Beta 2004.3.2"));
        EXPECT_EQ(splash.Label2->text(),
                  QStringLiteral("Norvale Systems\nMercantel Version Beta 2004.3.2"));
        EXPECT_EQ(splash.Label1->text(), QStringLiteral("Chargement en cours..."));
        EXPECT_EQ(splash.size(), splash.Picture1->size());
        MDIfrmMain frame;
        EXPECT_EQ(frame.windowTitle(), QStringLiteral("Mercantel Version Beta 2004.3.2"));
        EXPECT_EQ(QApplication::applicationName(), QStringLiteral("Mercantel"));
    }
    App().Settings.Nation = 2000;
    {
        frmSplash splash;
        EXPECT_EQ(splash.Label2->text(),
                  QStringLiteral("Norvale Systems\nTallyrate Version Beta 2004.3.2"));
        EXPECT_EQ(splash.Label1->text(), QStringLiteral("Loading, please wait..."));
        EXPECT_NE(splash.Picture1->pixmap().toImage(), SplashPicture(1000).toImage())
            << "each language has its own picture";
        MDIfrmMain frame;
        EXPECT_EQ(frame.windowTitle(), QStringLiteral("Tallyrate Version Beta 2004.3.2"));
        EXPECT_EQ(QApplication::applicationName(), QStringLiteral("Tallyrate"));
    }
    ResetAppState();
}
