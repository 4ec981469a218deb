#include "app/help.h"
#include "app/icons.h"

#include "testfiles.h"

#include <QDir>
#include <QFileInfo>
#include <QImage>
#include <QTemporaryDir>
#include <gtest/gtest.h>

// The guide is found beside a built program, in the shared data of an installed one, and in
// the language asked; without it F1 still leads somewhere: the maker's help page.
TEST(Guide, FoundBesideTheProgramOrInItsPrefixElseTheMakersPage) {
    QTemporaryDir root;
    const QString build = root.filePath(QStringLiteral("build/src"));
    for (const auto& [nation, language] : {std::pair{1000, "fr"}, {2000, "en"}}) {
        const QString page = build + "/guide/" + language + "/index.html";
        WriteBytes(page, "<html></html>");
        EXPECT_EQ(GuideUrl(nation, build).toLocalFile(), QFileInfo(page).canonicalFilePath());
    }

    const QString bin = root.filePath(QStringLiteral("usr/bin"));
    QDir().mkpath(bin);
    const QString shared = root.filePath(QStringLiteral("usr/share/mercantel/guide/fr/index.html"));
    WriteBytes(shared, "<html></html>");
    EXPECT_EQ(GuideUrl(1000, bin).toLocalFile(), QFileInfo(shared).canonicalFilePath());

    EXPECT_EQ(GuideUrl(2000, bin), QUrl(QStringLiteral("https://help.norvale.example/tallyrate/")));
    EXPECT_EQ(GuideUrl(1000, root.path()),
              QUrl(QStringLiteral("https://aide.norvale.example/mercantel/")));
}

// Every command has its own picture, sharp at single and double density; so has the program.
TEST(Pictures, EveryCommandAndTheProgramHaveTheirOwnAtBothDensities) {
    QList<QImage> seen;
    for (int i = 0; i < 7; ++i) {
        const QIcon icon = CommandIcon(i);
        ASSERT_FALSE(icon.isNull()) << i;
        EXPECT_EQ(icon.availableSizes(), (QList<QSize>{QSize(32, 32), QSize(64, 64)})) << i;
        const QImage picture = icon.pixmap(QSize(64, 64)).toImage();
        EXPECT_FALSE(seen.contains(picture)) << i;
        seen.append(picture);
    }
    EXPECT_TRUE(ProgramIcon().availableSizes().contains(QSize(256, 256)));
}
