// Activation of the checked lists through the questions, and deactivation of lists and
// catalogues.

#include "listfixture.h"

#include "pricelists/activation.h"

namespace {

QString matrixQuestion() {
    return "\n" + LoadText(15);
}
QString supplierQuestion() {
    return "\n" + LoadText(132);
}
QString codeQuestion(bool required = true) {
    return "\n" + LoadText(134) + (required ? "\n\n" + LoadText(143) : QString());
}

void check(ListFixture& f, std::initializer_list<int> rows) {
    for (int r : rows) {
        f.rsPrixList.move(r, MoveStart::First);
        f.state.ListMarks(0, r) = f.rsPrixList.value("FICHIER").toString();
    }
}

} // namespace

TEST(Activation, EachCheckedListIsAskedForAndTheBatchIsWrittenOnYes) {
    ListFixture f(
        {{.desc = "A ONE", .fichier = "AAA", .utiliser = false, .codes = {"", "UNI", "ACK", "UAP"}},
         {.desc = "B TWO", .fichier = "BBB", .utiliser = false, .departem = "05"},
         {.desc = "C THREE", .fichier = "CCC", .dateEff = Past, .dateStk = Past, .codeGro = "ZZ"},
         {.desc = "D FOUR", .fichier = "DDD", .utiliser = false}},
        {});
    ScriptedPrompter prompts; // nothing checked; then an activated list alone: nothing asked
    prompts.expectMessage(LoadText(141), Buttons::Ok, Icon::Warning, {}, Answer::Ok);
    MPActivate(f.commands());
    check(f, {2});
    MPActivate(f.commands());
    check(f, {0, 1});
    prompts.expectQuestion(matrixQuestion(), "abcdefghij", true)
        .expectQuestion(supplierQuestion(), "a supplier name longer than twenty-five", true)
        .expectQuestion(codeQuestion(), "ab")
        .expectQuestion(codeQuestion(), "   ") // blank: asked again
        .expectQuestion(codeQuestion(), "cd12")
        .expectMessage(LoadText(61), Buttons::YesNo, Icon::Warning, {}, Answer::Yes);
    MPActivate(f.commands());

    const QList<Question>& asked = prompts.questions();
    ASSERT_EQ(asked.size(), 5);
    EXPECT_TRUE(asked[0].option) << "Appliquer à toutes les listes starts ticked";
    EXPECT_EQ(asked[2].defaultValue, "UNI") << "the first default code that is not empty";
    EXPECT_TRUE(asked[2].showDepartement);
    EXPECT_EQ(asked[2].departement, "F") << "no department yet";
    EXPECT_EQ(asked[3].departement, "05");

    // The matrix and the supplier are cut to their fields' widths and apply to all lists; C,
    // already activated, is not asked.
    const QString given = "|ABCDEFGH|true|A SUPPLIER NAME LONGER TH|";
    EXPECT_EQ(f.rows("SELECT UTILISER, CODEGRO, FICFAMILLE, LFAMILLE, FOURNIS, DEPARTEM, CH_DESC1, "
                     "CH_DESC2, CH_COUT FROM PRIXLIST"),
              QStringList({"true|AB" + given + "F|true|true|true",
                           "true|CD12" + given + "05|true|true|true", "true|ZZ|||||true|false|true",
                           "false||||||true|false|true"}));

    EXPECT_EQ(f.state.ConfigDirty, Dirty::None);
    EXPECT_EQ(f.state.ListMarks(0, 1), "BBB") << "the lists stay checked";
    EXPECT_NE(f.list(0).node("L001"), nullptr) << "the trees show the new activations";
}

TEST(Activation, AbandonStopsTheRunAndTheListsBeforeItAreStillOffered) {
    for (const Answer answer : {Answer::Yes, Answer::No}) {
        ListFixture f({{.desc = "A", .fichier = "AAA", .utiliser = false},
                       {.desc = "B", .fichier = "BBB", .utiliser = false},
                       {.desc = "C", .fichier = "CCC", .utiliser = false}},
                      {});
        check(f, {0, 1, 2});
        ScriptedPrompter prompts;
        prompts.expectQuestion(matrixQuestion(), "")
            .expectQuestion(supplierQuestion(), "acme")
            .expectQuestion(codeQuestion(), "A1")
            .expectQuestion(matrixQuestion(), "")
            .expectQuestion(supplierQuestion(), QuestionAnswer{}) // Abandon
            .expectMessage(LoadText(61), Buttons::YesNo, Icon::Warning, {}, answer);
        MPActivate(f.commands());
        const bool saved = answer == Answer::Yes;
        EXPECT_EQ(f.rows("SELECT UTILISER, CODEGRO FROM PRIXLIST"),
                  QStringList({saved ? "true|A1" : "false|", "false|", "false|"}));
        EXPECT_EQ(f.state.ListMarks.selectedCount(), saved ? 3 : 0)
            << "answering No unchecks every list";
    }
}

TEST(Activation, DefaultCodesAndListsThatNeedNoCode) {
    ListFixture f({{.desc = "A", .fichier = "AAA", .utiliser = false, .codes = {"NVC"}},
                   {.desc = "B", .fichier = "BBB", .utiliser = false, .codes = {"", "", "", "UAP"}},
                   {.desc = "C", .fichier = "CCC", .utiliser = false},
                   {.desc = "D", .fichier = "DDD", .utiliser = false, .pasObliger = true},
                   {.desc = "E", .fichier = "EEE", .utiliser = false, .pasObliger = true}},
                  {});
    check(f, {0, 1, 2, 3});
    ScriptedPrompter prompts;
    prompts.expectQuestion(matrixQuestion(), "", true)
        .expectQuestion(supplierQuestion(), "", true)
        .expectQuestion(codeQuestion(), "xy", true)    // "use default codes" ticked from here on
        .expectQuestion(codeQuestion(), "abcde", true) // more than 4 characters: refused
        .expectMessage(LoadText(42), Buttons::Ok, Icon::Warning, {}, Answer::Ok)
        .expectQuestion(codeQuestion(), "zz", true)
        .expectMessage(LoadText(61), Buttons::YesNo, Icon::Warning, {}, Answer::Yes);
    MPActivate(f.commands());

    ASSERT_EQ(prompts.questions().size(), 5);
    EXPECT_TRUE(prompts.questions()[3].option) << "the switch shown as ticked";
    EXPECT_EQ(prompts.questions()[3].title, "C") << "no default code: asked all the same";
    // B takes its default code without a question, D needs none, E is not checked; no matrix given.
    EXPECT_EQ(f.rows("SELECT UTILISER, CODEGRO, FICFAMILLE FROM PRIXLIST"),
              QStringList({"true|XY|", "true|UAP|", "true|ZZ|", "true||", "false||"}));
}

TEST(Deactivation, TheLastListOfACodeTakesItOutOfItsCatalogues) {
    ListFixture f({ActivatedList("A", "AAA", "AB", "C1;C2;"),
                   ActivatedList("B", "BBB", "AB", "C1;"), ActivatedList("C", "CCC", "CD", "C1;")},
                  {{.fichier = "C1", .desc = "Cat one", .grl = {"CD", "AB"}},
                   {.fichier = "C2", .desc = "Cat two", .grl = {"", "", "AB"}}});
    f.state.LastTreeFocus = "tvwList";
    const QString codesInUse = "SELECT GRL1, GRL2, GRL3 FROM CATALIST";

    check(f, {0});
    MPDesactivate(f.commands());
    EXPECT_EQ(f.rows("SELECT UTILISER, CATNO FROM PRIXLIST").first(), "false|");
    EXPECT_EQ(f.rows(codesInUse), QStringList({"CD|AB|", "||AB"})) << "BBB still carries AB";

    check(f, {1});
    MPDesactivate(f.commands());
    EXPECT_EQ(f.rows(codesInUse), QStringList({"CD||", "||AB"}))
        << "only the catalogues of the list's own CATNO";
    EXPECT_EQ(f.list(3).nodeCount(), 2) << "both shown as not activated";
}

TEST(Deactivation, ACatalogueGoesOnlyOnceNoListIsUnderIt) {
    ListFixture f({ActivatedList("A", "AAA", "AB", "C1;")}, {{"C1", "Cat one"}, {"C2", "Cat two"}});
    f.state.LastTreeFocus = "tvwCat";
    KeyedTree& tree = f.cat(0);
    for (const QString& key : {CatalogueKey("C1"), QStringLiteral("L0000")}) {
        tree.selectNode(tree.node(key)); // the nodes are made again by each refresh
        ScriptedPrompter prompts;
        prompts.expectMessage(LoadText(139), Buttons::Ok, Icon::Critical, {}, Answer::Ok);
        MPDesactivate(f.commands());
    }

    for (const Answer answer : {Answer::No, Answer::Yes}) {
        f.cat(0).selectNode(f.cat(0).node(CatalogueKey("C2")));
        ScriptedPrompter prompts;
        prompts.expectMessage(LoadText(129), Buttons::YesNo, Icon::Warning, {}, answer);
        MPDesactivate(f.commands());
        EXPECT_EQ(f.rows("SELECT UTILISER FROM CATALIST"),
                  QStringList({"true", answer == Answer::No ? "true" : "false"}));
    }
    EXPECT_NE(f.cat(1).node(CatalogueKey("C2")), nullptr) << "shown as not activated";
}
