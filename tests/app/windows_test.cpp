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
    for (const auto& [nation, product] :
         {std::pair{1000, QStringLiteral("Mercantel")}, {2000, QStringLiteral("Tallyrate")}}) {
        App().Settings.Nation = qint16(nation);
        const QString title = product + QStringLiteral(" Version Beta 2004.3.2");
        frmSplash splash;
        EXPECT_EQ(QApplication::applicationName(), title);
        EXPECT_EQ(splash.Label2->text(), QStringLiteral("Norvale Systems\n") + title);
        EXPECT_EQ(splash.size(), splash.Picture1->size());
        EXPECT_EQ(splash.Picture1->pixmap().toImage() == SplashPicture(1000).toImage(),
                  nation == 1000)
            << "each language has its own picture";
        MDIfrmMain frame;
        EXPECT_EQ(frame.windowTitle(), title);
        EXPECT_EQ(QApplication::applicationName(), product);
    }
    ResetAppState();
}
