// The program itself: its texts and Qt's in the chosen language, the guide behind F1, the
// pictures, the start windows' names, and the table of texts it keeps hidden.
#include "app/appstate.h"
#include "app/frmsplash.h"
#include "app/help.h"
#include "app/hiddenscheme.h"
#include "app/hiddenstrings.h"
#include "app/icons.h"
#include "app/mdifrmmain.h"
#include "app/messages.h"

#include "testfiles.h"

#include <QApplication>
#include <QDialogButtonBox>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QImage>
#include <QLabel>
#include <QPushButton>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <gtest/gtest.h>
#include <map>
#include <stdexcept>

namespace {

// The plain list the build scrambled into the program.
std::map<int, QString> plainList() {
    QFile file(QStringLiteral(MERCANTEL_SOURCE_DIR "/resources/hiddenstrings.txt"));
    EXPECT_TRUE(file.open(QIODevice::ReadOnly));
    std::map<int, QString> entries;
    const QRegularExpression line("^(\\d+)\\s+\"(.*)\"$", QRegularExpression::MultilineOption);
    for (const auto& match : line.globalMatch(QString::fromLatin1(file.readAll())))
        entries[match.captured(1).toInt()] = match.captured(2);
    return entries;
}

} // namespace

// The texts keep their blanks; a language base without texts falls back on French.
TEST(MessageCatalogue, TheLanguageBaseChoosesTheTextsAndQtsOwnButtons) {
    ResetAppState();
    App().Settings.Nation = 1000;
    EXPECT_EQ(LoadText(62), "Nom ");
    App().Settings.Nation = 3000;
    EXPECT_EQ(LoadText(35), "Désirez-vous quitter Mercantel?");
    for (const auto& [nation, cancel] : {std::pair{1000, "Annuler"}, {2000, "Cancel"}}) {
        App().Settings.Nation = qint16(nation);
        LoadQtTranslations();
        const QDialogButtonBox buttons(QDialogButtonBox::Cancel);
        EXPECT_EQ(buttons.button(QDialogButtonBox::Cancel)->text(), QString::fromUtf8(cancel));
    }
    ResetAppState();
}

// The guide is found beside a built program, in the shared data of an installed one, and in
// the language asked; without it F1 still leads somewhere: the maker's help page.
TEST(Guide, FoundBesideTheProgramOrInItsPrefixElseTheMakersPage) {
    QTemporaryDir root;
    const QString build = root.filePath("build/src");
    for (const auto& [nation, language] : {std::pair{1000, "fr"}, {2000, "en"}}) {
        const QString page = build + "/guide/" + language + "/index.html";
        WriteBytes(page, "<html></html>");
        EXPECT_EQ(GuideUrl(nation, build).toLocalFile(), QFileInfo(page).canonicalFilePath());
    }

    const QString bin = root.filePath("usr/bin");
    QDir().mkpath(bin);
    const QString shared = root.filePath("usr/share/mercantel/guide/fr/index.html");
    WriteBytes(shared, "<html></html>");
    EXPECT_EQ(GuideUrl(1000, bin).toLocalFile(), QFileInfo(shared).canonicalFilePath());

    EXPECT_EQ(GuideUrl(2000, bin), QUrl("https://help.norvale.example/tallyrate/"));
    EXPECT_EQ(GuideUrl(1000, root.path()), QUrl("https://aide.norvale.example/mercantel/"));
}

// Every command has its own picture, sharp at single and double density; so has the program.
TEST(Pictures, EveryCommandAndTheProgramHaveTheirOwnAtBothDensities) {
    QList<QImage> seen;
    for (int i = 0; i < 7; ++i) {
        const QIcon icon = CommandIcon(i);
        EXPECT_EQ(icon.availableSizes(), (QList<QSize>{QSize(32, 32), QSize(64, 64)})) << i;
        const QImage picture = icon.pixmap(QSize(64, 64)).toImage();
        EXPECT_FALSE(seen.contains(picture)) << i;
        seen.append(picture);
    }
    EXPECT_TRUE(ProgramIcon().availableSizes().contains(QSize(256, 256)));
}

// The splash and the frame carry the product name of the language with the version; the
// boxes shown without a title of their own then read the product name.
TEST(StartWindows, SplashAndFrameNameTheProductAndItsVersion) {
    ResetAppState();
    for (const auto& [nation, product] :
         {std::pair{1000, QStringLiteral("Mercantel")}, {2000, QStringLiteral("Tallyrate")}}) {
        App().Settings.Nation = qint16(nation);
        const QString title = product + " Version Beta 2004.3.2";
        frmSplash splash;
        EXPECT_EQ(QApplication::applicationName(), title);
        EXPECT_EQ(splash.Label2->text(), "Norvale Systems\n" + title);
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

// Every entry comes back as listed, none is stored in clear, and equal texts of two entries are
// not stored alike.
TEST(HiddenStrings, TheProgramsTableGivesBackThePlainList) {
    const auto entries = plainList();
    ASSERT_TRUE(entries.count(0));
    for (int n = 0; n < HiddenTable::entryCount(); ++n) {
        const auto it = entries.find(n);
        EXPECT_EQ(HiddenString(n), it == entries.end() ? QString() : it->second) << n;
    }
    QFile data(QStringLiteral(":/custom/101"));
    ASSERT_TRUE(data.open(QIODevice::ReadOnly));
    EXPECT_FALSE(data.readAll().contains(HiddenString(0).toLatin1())) << "stored in clear";

    const HiddenScheme::Bytes key = {1, 2, 3};
    const HiddenScheme::Bytes same = {'S', 'A', 'M', 'E'};
    EXPECT_NE(HiddenScheme::scramble(same, 1, key), HiddenScheme::scramble(same, 2, key));
}

// An entry outside the table, or an index that does not fit its data, is an error for the caller.
TEST(HiddenStrings, AWrongEntryOrIndexIsRefused) {
    EXPECT_THROW(HiddenString(-1), std::out_of_range);
    EXPECT_THROW(HiddenString(HiddenTable::entryCount()), std::out_of_range);

    const QByteArray data(40, 'x');
    QByteArray index(int(HiddenScheme::IndexSize), '\0');
    EXPECT_THROW(HiddenTable(data, index.left(40)), std::runtime_error);
    EXPECT_THROW(HiddenTable(data, index), std::runtime_error) << "no key";
    index[2 * 28] = 30;
    index[2 * 29] = 40;
    EXPECT_NO_THROW(HiddenTable(data, index));
    index[2 * 29] = 41;
    EXPECT_THROW(HiddenTable(data, index), std::runtime_error) << "key past the data";
    index[2 * 29] = 40;
    index[2 * 3] = 20;
    EXPECT_THROW(HiddenTable(data, index), std::runtime_error) << "offsets going backwards";
}
