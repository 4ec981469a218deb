// fetchupdates against the scripted server: the report on standard output, messages and
// progress on standard error, and its exit statuses.
#include "app/messages.h"
#include "comms/signedupdate.h"
#include "sessionfixture.h"

#include <QProcess>
#include <QProcessEnvironment>
#include <QRegularExpression>

namespace {

struct ToolRun {
    int status = -1;
    QString out;
    QString err;
};

class FetchUpdatesTest : public SessionTest {
protected:
    ToolRun fetch(QStringList arguments, quint16 port = 0) {
        arguments.prepend(install.drive());
        arguments << "--host" << QStringLiteral("127.0.0.1") << "--port"
                  << QString::number(port ? port : server.port());
        return run(arguments);
    }
    ToolRun run(const QStringList& arguments) {
        QProcess process;
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(QStringLiteral("XDG_CONFIG_HOME"), install.programDir());
        process.setProcessEnvironment(environment);
        process.start(QStringLiteral(MERCANTEL_BINARY_DIR "/tools/fetchupdates/fetchupdates"),
                      arguments);
        EXPECT_TRUE(
            QTest::qWaitFor([&] { return process.state() == QProcess::NotRunning; }, 30000));
        return {process.exitCode(), QString::fromUtf8(process.readAllStandardOutput()),
                QString::fromUtf8(process.readAllStandardError())};
    }
};

} // namespace

// A newer program is declined and its version told; the lists are fetched.
TEST_F(FetchUpdatesTest, ListsFetchedPrintTheReportAndSucceed) {
    server.answerStart("s", "2005.1.1");
    server.answer("LISTEBET", ScriptedServer::file("LISTE", "bet"));
    const ToolRun run = fetch({"--lists", "bet"});
    ASSERT_EQ(run.status, 0) << run.err.toStdString();
    EXPECT_TRUE(run.out.contains(QRegularExpression(
        QStringLiteral("^[0-9:]+[^>]*> BETA FILTRES réussie\r\n\r\n--- Fin du rapport ---$"))))
        << run.out.toStdString();
    EXPECT_TRUE(run.err.contains(QStringLiteral("BETA FILTRES réussie")));
    EXPECT_TRUE(run.err.contains(QStringLiteral("offered version 2005.1.1")));
    EXPECT_FALSE(server.received.contains("UPDA2"));
    EXPECT_EQ(serviceCalls(), QStringList{QStringLiteral("5 1 2")});

    // --marked takes the lists waiting for their update, as box 0 does.
    server.answer("LISTEALP", ScriptedServer::file("LISTE", "alp"));
    const ToolRun marked = fetch({"--marked"});
    EXPECT_EQ(marked.status, 0);
    EXPECT_TRUE(marked.out.contains(QStringLiteral("> ALPHA FREINS réussie\r\n")));
}

TEST_F(FetchUpdatesTest, FailuresAndRefusalsGiveTheirStatuses) {
    const QList<QStringList> refused = {{"--lists", "NOPE"},
                                        {"--index", "--partdex"},
                                        {"--catalogues", "C1"},
                                        {"--timeout", "soon"}};
    for (const QStringList& bad : refused) {
        const ToolRun run = fetch(bad);
        EXPECT_EQ(run.status, 2) << bad.join(u' ').toStdString();
        EXPECT_TRUE(run.out.isEmpty());
    }
    EXPECT_TRUE(server.received.isEmpty()); // refused before connecting: nothing written

    server.answerStart("s", "2004.3.2");
    server.answer("NVINFNVCOM", ScriptedServer::message("ERROR"));
    ToolRun run = fetch({"--index", "--english"}); // an item fails
    EXPECT_EQ(run.status, 1);
    EXPECT_TRUE(run.out.endsWith(
        QStringLiteral(": Index update unsuccessful\r\n\r\n--- End of report ---")));

    run = fetch({}, 1); // no server there
    EXPECT_EQ(run.status, 1);
    EXPECT_TRUE(run.err.contains(LoadText(59)));
    EXPECT_EQ(run.out, QStringLiteral("\r\n--- Fin du rapport ---"));

    ScriptedServer silent;
    silent.greeting.clear();
    EXPECT_EQ(fetch({"--timeout", "1"}, silent.port()).status, 1);
}

// For support staff: an updater is checked as the program checks it, and left as it is.
TEST_F(FetchUpdatesTest, VerifyUpdateNamesTheKeyOrTheReason) {
    const QString signedUpdater = QStringLiteral(SIGNED_DEMO_UPDATER);
    const ToolRun good = run({"--verify-update", signedUpdater});
    EXPECT_EQ(good.status, 0) << good.err.toStdString();
    EXPECT_EQ(good.out, QStringLiteral("demo\n"));

    const QString unsignedUpdater =
        QStringLiteral(MERCANTEL_BINARY_DIR "/tools/demo-updater/demo-updater");
    const ToolRun bad = run({"--verify-update", unsignedUpdater, "--english"});
    EXPECT_EQ(bad.status, 1);
    EXPECT_TRUE(bad.out.isEmpty());
    App().Settings.Nation = 2000;
    EXPECT_TRUE(bad.err.contains(SignedUpdateReportText(SignedUpdateReason::NoTrailer)))
        << bad.err.toStdString();
    EXPECT_TRUE(QFile::exists(unsignedUpdater));

    const ToolRun missing = run({"--verify-update", prg(QStringLiteral("NONE.EXE")), "--english"});
    EXPECT_EQ(missing.status, 1);
    EXPECT_TRUE(missing.err.contains(LoadText(173)));

    EXPECT_EQ(run({install.drive(), "--verify-update", signedUpdater}).status, 2);
    EXPECT_EQ(run({"--verify-update"}).status, 2);
}
