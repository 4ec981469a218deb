#include "app/help.h"
#include "app/icons.h"

#include <QDir>
#include <QFile>
#include <QImage>
#include <QTemporaryDir>
#include <gtest/gtest.h>

namespace {

void writePage(const QString& path) {
    QDir().mkpath(QFileInfo(path).path());
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("<html></html>");
}

} // namespace

// The guide is found beside a built program, in the shared data of an installed one, and in
// the language asked; without it F1 still leads somewhere: the maker's help page.
TEST(Guide, FoundBesideTheProgramOrInItsPrefixElseTheMakersPage) {
    QTemporaryDir root;
    const QString build = root.filePath(QStringLiteral("build/src"));
    writePage(build + QStringLiteral("/guide/fr/index.html"));
    writePage(build + QStringLiteral("/guide/en/index.html"));
    EXPECT_EQ(GuideUrl(2000, build).toLocalFile(),
              QFileInfo(build + QStringLiteral("/guide/en/index.html")).canonicalFilePath());
    EXPECT_EQ(GuideUrl(1000, build).toLocalFile(),
              QFileInfo(build + QStringLiteral("/guide/fr/index.html")).canonicalFilePath());

    const QString bin = root.filePath(QStringLiteral("usr/bin"));
    QDir().mkpath(bin);
    const QString shared = root.filePath(QStringLiteral("usr/share/mercantel/guide/fr/index.html"));
    writePage(shared);
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
