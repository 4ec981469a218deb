// The catalogue association dialog and the association command: which lists gain or lose a
// catalogue, what the categories use, and what another workstation's row does to it.

#include "listfixture.h"

#include "dbasepeer.h"
#include "pricelists/association.h"
#include "pricelists/frmcatalog.h"

#include <QListWidget>
#include <QPushButton>

namespace {

const QString CodePrompt = QStringLiteral("Veuillez inscrire le code de groupe que vous désirez "
                                          "utiliser. \r\n(Maximum de 4 caractères)");

CatalogueRow catalogue(const char* fichier, std::array<QString, 9> gr, std::array<QString, 9> grl) {
    CatalogueRow row{fichier, QStringLiteral("Catalogue %1").arg(fichier)};
    row.gr = gr;
    row.grd = {"Freins", "Filtres", "Courroies et poulies auto"};
    row.grl = grl;
    return row;
}

std::unique_ptr<frmCatalog> openDialog(ListFixture& f, const QString& code) {
    const QTreeWidgetItem* node = f.cat(0).node(CatalogueKey(code));
    return std::make_unique<frmCatalog>(f.commands(), node->text(0), KeyedTree::keyOf(node));
}

void choose(frmCatalog& dialog, int row) {
    dialog.lstCatgroupeClick(row);
    dialog.OKButtonClick();
}

const QString Catnos = QStringLiteral("SELECT CATNO FROM PRIXLIST");

// The other workstation, in a process of its own.
const QString PeerProgram = QStringLiteral(DBASE_PEER);

} // namespace

TEST(CatalogueDialog, RowsKeepTheirCategoryAndOKWaitsForAChoice) {
    ListFixture f({ActivatedList("A", "AAA", "AB", "")},
                  {catalogue("ABC", {"G1", "", "G3"}, {"AB"}), catalogue("XY", {}, {})});
    f.show("L000");
    auto dialog = openDialog(f, "ABC");
    ASSERT_EQ(dialog->lstCatgroupe->count(), 2)
        << "a category without a suggested code is left out";
    EXPECT_EQ(dialog->categoryOfRow(1), 3) << "the category after the gap";
    EXPECT_EQ(dialog->lstCatgroupe->item(0)->text(), CategoryRowText("G1", "Freins", "AB"));
    EXPECT_EQ(CategoryRowText("G3", QString(30, 'd'), "AB").indexOf("AB"),
              CategoryRowText("G3", "Court", "AB").indexOf("AB"))
        << "a long description keeps the code in use in its column";
    EXPECT_FALSE(dialog->OKButton->isEnabled());
    dialog->lstCatgroupeClick(1);
    EXPECT_TRUE(dialog->OKButton->isEnabled());
    EXPECT_FALSE(f.binding.isBound()) << "the pane is untied while the dialog is open";
    dialog->CancelButtonClick();
    EXPECT_TRUE(f.binding.isBound());

    auto empty = openDialog(f, "XY");
    EXPECT_EQ(empty->lstCatgroupe->count(), 0);
}

// The lists of the new code gain the catalogue once; those of the code replaced lose it once no
// category uses that code any more.
TEST(CatalogueDialog, ReplacingACodeDissociatesItsListsOnceNoCategoryUsesIt) {
    ListFixture f({ActivatedList("M", "MMM", "NEW", "AB;"),
                   ActivatedList("N", "NNN", "NEW", "C;"),
                   ActivatedList("P", "PPP", "OLD", "AB;B;"),
                   ActivatedList("Q", "QQQ", "", "B;C;", true),
                   {.desc = "R", .fichier = "RRR", .utiliser = false, .codeGro = "NEW"}},
                  {catalogue("B", {"G1", "G2"}, {"OLD", "OLD"}), catalogue("AB", {"G1"}, {}),
                   catalogue("C", {}, {})});
    f.show("L000");
    auto dialog = openDialog(f, "B");
    choose(*dialog, 0);
    EXPECT_EQ(dialog->result(), QDialog::Accepted);
    EXPECT_EQ(f.rows("SELECT GRL1, GRL2 FROM CATALIST").first(), "NEW|OLD");
    // M's AB; does not hold B, R is not activated, P keeps B while category 2 still uses OLD.
    EXPECT_EQ(f.rows(Catnos), QStringList({"AB;", "C;B;", "AB;B;", "B;C;", ""}));
    EXPECT_EQ(f.rsPrixList.filter(), "");

    f.show("L000");
    choose(*openDialog(f, "B"), 1);
    EXPECT_EQ(f.rows("SELECT GRL1, GRL2 FROM CATALIST").first(), "NEW|NEW");
    // P loses the entry B, not the B; inside AB;, Q that needs no code too; N is not added twice.
    EXPECT_EQ(f.rows(Catnos), QStringList({"AB;", "C;B;", "AB;", "C;", ""}));
}

TEST(CatalogueDialog, AListWithoutCodeAsksForOneOfAtMostFourCharacters) {
    ListFixture f({ActivatedList("A", "AAA", "", ""), ActivatedList("B", "BBB", "AB", "")},
                  {catalogue("C1", {"G1"}, {"AB"})});
    f.show("L000");
    auto dialog = openDialog(f, "C1");
    ScriptedPrompter prompts;
    prompts.expectInput(CodePrompt, "abcde")
        .expectMessage(LoadText(42), Buttons::Ok, Icon::Warning, {}, Answer::Ok);
    choose(*dialog, 0);
    EXPECT_NE(dialog->result(), QDialog::Accepted) << "still open";
    EXPECT_EQ(f.rows(Catnos), QStringList({"", ""})) << "nothing written";
    prompts.expectInput(CodePrompt, ""); // nothing typed: the category's own code
    choose(*dialog, 0);
    EXPECT_EQ(dialog->result(), QDialog::Accepted);
    EXPECT_EQ(f.rows(Catnos), QStringList({"", "C1;"})) << "the lists of AB, not the one without";
    EXPECT_EQ(f.rows("SELECT GRL1 FROM CATALIST"), QStringList({"AB"}));
}

TEST(CatalogueDialog, ARowHeldOrChangedElsewhereLeavesNothingHalfWritten) {
    ListFixture f({ActivatedList("A", "AAA", "AB", ""), ActivatedList("B", "BBB", "AB", "")},
                  {catalogue("C1", {"G1"}, {})});
    f.show("L000");
    {
        // The catalogue's row is held by another workstation: A's CATNO is written first,
        // then put back.
        DbasePeer peer(PeerProgram, {"lock-record", f.dir.filePath("CATALIST.DBF"), "1"});
        ASSERT_EQ(peer.answer(), "ready");
        auto dialog = openDialog(f, "C1");
        ScriptedPrompter prompts;
        prompts.expectMessageMatching("^errOKButton: -?\\d+\\n.*locked");
        choose(*dialog, 0);
        EXPECT_NE(dialog->result(), QDialog::Accepted);
        EXPECT_EQ(dialog->lstCatgroupe->count(), 1) << "the dialog shows the tables again";
        EXPECT_FALSE(dialog->OKButton->isEnabled());
    }
    const auto written = [&] {
        return f.rows("SELECT CATNO, FOURNIS FROM PRIXLIST") + f.rows("SELECT GRL1 FROM CATALIST");
    };
    EXPECT_EQ(written(), QStringList({"|", "|", ""}));

    // B's row was changed by another workstation since it was read: A goes back, B keeps the
    // other workstation's change, and the catalogue is not touched.
    f.show("L000");
    auto dialog = openDialog(f, "C1");
    ASSERT_EQ(
        DbasePeer(PeerProgram, {"set", f.dir.path(), "PRIXLIST", "1", "FOURNIS", "PEER"}).answer(),
        "saved");
    ScriptedPrompter prompts;
    prompts.expectMessageMatching("^errOKButton: ");
    choose(*dialog, 0);
    EXPECT_EQ(written(), QStringList({"|", "|PEER", ""}));

    // Once the other workstation is done, the same choice goes through.
    choose(*dialog, 0);
    EXPECT_EQ(written(), QStringList({"C1;|", "C1;|PEER", "AB"}));
}

TEST(AssociationCommand, DissociatingAListTakesItsCodeOutOfTheCatalogue) {
    ListFixture f({ActivatedList("W", "WWW", "AB", "XY;"),
                   ActivatedList("X", "XXX", "AB", "AXY;K;XY;"),
                   ActivatedList("Y", "YYY", "", "XY;K;"), ActivatedList("Z", "ZZZ", "", "XY;")},
                  {catalogue("XY", {"G1", "G2"}, {"CD", "AB"}), catalogue("AXY", {}, {}),
                   catalogue("K", {}, {})});
    const ListCommandContext c = f.commands();
    ScriptedPrompter prompts; // nothing selected, then a catalogue alone
    prompts.expectMessage(LoadText(127)).expectMessage(LoadText(128));
    AssociationCommand(c);
    f.cat(0).selectNode(f.cat(0).node(CatalogueKey("XY")));
    AssociationCommand(c);
    // Selects the node of a list under catalogue XY and runs the command.
    const auto dissociate = [&](int row) {
        const QTreeWidgetItem* catalogueNode = f.cat(0).node(CatalogueKey("XY"));
        for (int i = 0; i < catalogueNode->childCount(); ++i) {
            if (QTreeWidgetItem* node = catalogueNode->child(i); KeyedTree::rowOf(node) == row) {
                f.cat(0).selectNode(node);
                f.ui->Nodeclick(0, node);
                break;
            }
        }
        AssociationCommand(c);
    };

    // X (AB) under XY: every activated list of AB loses XY, the slot of AB is emptied.
    dissociate(1);
    EXPECT_EQ(f.rows(Catnos), QStringList({"", "AXY;K;", "XY;K;", "XY;"}));
    EXPECT_EQ(f.rows("SELECT GRL1, GRL2 FROM CATALIST").first(), "CD|");

    // A list without a code goes alone.
    dissociate(2);
    EXPECT_EQ(f.rows(Catnos), QStringList({"", "AXY;K;", "K;", "XY;"}));

    // The last list under the catalogue: withdrawing it is offered; No keeps it.
    prompts.expectMessage(LoadText(129), Buttons::YesNo, Icon::None, {}, Answer::No);
    dissociate(3);
    EXPECT_EQ(f.rows(Catnos).last(), "");
    EXPECT_EQ(f.rows("SELECT UTILISER FROM CATALIST").first(), "true");
    EXPECT_EQ(f.cat(0).node(CatalogueKey("XY"))->childCount(), 0);
}
