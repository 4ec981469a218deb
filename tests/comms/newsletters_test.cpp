#include "comms/bulletinpage.h"

#include "app/appstate.h"
#include "dbase/dberror.h"
#include "dbase/tablewriter.h"
#include "support/scriptedprompter.h"
#include "support/tempinstall.h"

#include <QComboBox>
#include <QFile>
#include <QTest>
#include <QTextBlock>
#include <QTextEdit>
#include <array>
#include <gtest/gtest.h>
#include <ostream>
#include <tuple>

static void PrintTo(const QString& text, std::ostream* out) {
    *out << '"' << text.toStdString() << '"';
}

namespace {

using Newsletter = std::array<QVariant, 3>; // the advertiser, the subject and the text

class NewslettersTest : public ::testing::Test {
protected:
    void SetUp() override {
        ResetAppState();
        App().InfoPath = install.dir(QStringLiteral("NVINFO"));
    }

    // NVINDEX as the maker sends it: eleven fields, the advertiser second, the subject fifth
    // and the text last.
    static void writeIndex(const QList<Newsletter>& newsletters) {
        NewTable table;
        table.fields = {
            {"NUMERO", 'C', 6, 0},     {"ANNONCEUR", 'C', 30, 0}, {"DATEPUB", 'D', 8, 0},
            {"CATEGORIE", 'C', 20, 0}, {"SUJET", 'C', 60, 0},     {"FICHIER", 'C', 12, 0},
            {"LANGUE", 'C', 2, 0},     {"PAGES", 'N', 3, 0},      {"AUTEUR", 'C', 30, 0},
            {"RESUME", 'C', 80, 0},    {"TEXTE", 'C', 254, 0}};
        for (const Newsletter& n : newsletters) {
            QVariantList row(table.fields.size());
            row[0] = QString::number(table.rows.size() + 1);
            std::tie(row[1], row[4], row[10]) = std::tie(n[0], n[1], n[2]);
            table.rows << row;
        }
        writeNewTable(App().InfoPath + QStringLiteral("NVINDEX.DBF"), table);
    }

    static QStringList items(const QComboBox* box) {
        QStringList texts;
        for (int i = 0; i < box->count(); ++i)
            texts << box->itemText(i);
        return texts;
    }

    QString shown() const { return page.rtxBulletins->toPlainText(); }

    // The user picks an entry with the keys, as the mouse would.
    static void choose(QComboBox* box, int index) {
        box->setFocus();
        if (box->currentIndex() > index)
            box->setCurrentIndex(-1);
        while (box->currentIndex() < index)
            QTest::keyClick(box, Qt::Key_Down);
    }

    TempInstall install;
    BulletinPage page;
};

TEST_F(NewslettersTest, RichTextIsShownFormattedAndOtherTextAsItIsWithoutItsFormat) {
    writeIndex({{"A", "1",
                 "{\\rtf1{\\colortbl;\\red255\\green0\\blue0;}\\b\\i\\cf1\\fs40 Promo\\par Prix}"},
                {"A", "2", "Texte {\\rtf1 brut}"},
                {"A", "3", QVariant()}});
    page.SetupBulletin();
    const auto firstFormat = [this] {
        return page.rtxBulletins->document()->begin().begin().fragment().charFormat();
    };
    EXPECT_EQ(shown(), "Promo\nPrix");
    EXPECT_EQ(firstFormat().fontWeight(), QFont::Bold);

    choose(page.cmbSujet, 1);
    EXPECT_EQ(shown(), "Texte {\\rtf1 brut}");
    EXPECT_EQ(firstFormat().fontWeight(), QFont::Normal);
    EXPECT_FALSE(firstFormat().hasProperty(QTextFormat::ForegroundBrush));
    choose(page.cmbSujet, 2);
    EXPECT_EQ(shown(), "");
}

// Nothing is read while the program updates. The index lists each advertiser once and shows
// the first newsletter; another advertiser's subjects are listed, and the newsletter shown
// changes once one is chosen. A reload after a session starts again from the first
// advertiser; an index that cannot be read keeps the lists, and one without advertisers empties
// them.
TEST_F(NewslettersTest, TheIndexIsListedAndReloadedUnlessItCannotBeRead) {
    ScriptedPrompter prompts;
    App().UpdateMode = true; // NVINDEX is missing, yet nothing is said
    page.SetupBulletin();
    App().UpdateMode = false;

    // Without blanks between them, "GATES" + "Z" sorts after "GATESB" + "X"; a record without
    // subject sorts before all others, its whole key being Null.
    writeIndex({{"GATES", "Z", "Texte Z"},
                {"GATESB", "X", "Texte X"},
                {"GATES", "A", "Texte A"},
                {"GATES", QVariant(), "Texte vide"},
                {QVariant(), "Sans annonceur", "Orphelin"},
                {"GATESB", "W", "Texte W"}});
    page.SetupBulletin();
    EXPECT_EQ(page.BulletinRows().rowCount(), 6) << "every record is kept";
    EXPECT_EQ(items(page.cmbAnnonceur), QStringList({"GATES", "GATESB"}))
        << "records without an advertiser are under none";
    EXPECT_EQ(items(page.cmbSujet), QStringList({"", "A", "Z"}));
    EXPECT_EQ(shown(), "Texte vide");
    choose(page.cmbSujet, 2);
    EXPECT_EQ(shown(), "Texte Z");
    choose(page.cmbAnnonceur, 1);
    EXPECT_EQ(items(page.cmbSujet), QStringList({"W", "X"}));
    EXPECT_EQ(page.cmbSujet->currentIndex(), -1) << "no subject is chosen yet";
    EXPECT_EQ(shown(), "Texte Z") << "the former newsletter stays until a subject is chosen";
    choose(page.cmbSujet, 1);
    EXPECT_EQ(shown(), "Texte X");
    choose(page.cmbSujet, 0);
    ASSERT_EQ(shown(), "Texte W");

    prompts.expectMessage(QStringLiteral("errSetupBulletin: 3021 Either BOF or EOF is True, or "
                                         "the current record has been deleted. Requested "
                                         "operation requires a current record."));
    writeIndex({});
    page.SetupBulletin();
    EXPECT_EQ(items(page.cmbAnnonceur), QStringList({"GATES", "GATESB"}));
    EXPECT_EQ(items(page.cmbSujet), QStringList({"W", "X"}));
    EXPECT_EQ(shown(), "Texte W");

    prompts.expectMessageMatching(
        QStringLiteral("^errSetupBulletin: %1 .*NVINDEX").arg(DbErrors::NoSuchTable));
    ASSERT_TRUE(QFile::remove(App().InfoPath + QStringLiteral("NVINDEX.DBF")));
    page.SetupBulletin();
    EXPECT_EQ(page.BulletinRows().rowCount(), 6);

    writeIndex({{"AUTOLITE", "Nouveau", "Texte nouveau"}, {"WIX", "Filtres", "Texte WIX"}});
    page.SetupBulletin();
    EXPECT_EQ(items(page.cmbAnnonceur), QStringList({"AUTOLITE", "WIX"}));
    EXPECT_EQ(shown(), "Texte nouveau");

    prompts.expectMessage(QStringLiteral("errSetupBulletin: 380 Invalid property value"));
    writeIndex({{QVariant(), "Seul", "Texte"}});
    page.SetupBulletin();
    EXPECT_EQ(page.cmbAnnonceur->count(), 0);
    EXPECT_EQ(page.cmbSujet->count(), 0);
}

} // namespace
