#include "stockfixture.h"

#include "app/appstate.h"
#include "app/messages.h"

#include <QProcess>
#include <gtest/gtest.h>

namespace {

struct ToolRun {
    int exitCode = -1;
    QStringList out;
    QString err;
};

ToolRun runStockSearch(const QStringList& arguments) {
    QProcess process;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("ASAN_OPTIONS"), QStringLiteral("detect_leaks=0"));
    process.setProcessEnvironment(environment);
    process.start(QStringLiteral(STOCKSEARCH_PATH), arguments);
    EXPECT_TRUE(process.waitForFinished(30000));
    ToolRun run;
    run.exitCode = process.exitCode();
    const QString out = QString::fromUtf8(process.readAllStandardOutput());
    run.out = out.split(u'\n');
    if (run.out.last().isEmpty())
        run.out.removeLast();
    run.err = QString::fromUtf8(process.readAllStandardError()).trimmed();
    return run;
}

TEST(StockSearchTool, PrintsTheLinesOfTheSearchAndFailsWithMessage1079) {
    ResetAppState();
    StockFixture fixture;
    std::vector<StockPart> parts;
    for (int i = 0; i < 50; ++i)
        parts.push_back(TestPart(QStringLiteral("NGK%1").arg(i % 20), i + 1));
    fixture.write(parts, {3, true, 2, "NUMERO"});

    App().Settings.Nation = 2000;
    const StockFixture::Result expected = fixture.search(QStringLiteral("ngk1"), 7);
    const ToolRun english = runStockSearch({fixture.prgDir(), QStringLiteral("ngk1"),
                                            QStringLiteral("7"), QStringLiteral("--english")});
    EXPECT_EQ(english.exitCode, 0);
    EXPECT_EQ(english.out, expected.lines);

    App().Settings.Nation = 1000;
    const ToolRun french = runStockSearch({fixture.prgDir(), QStringLiteral("NGK19")});
    EXPECT_EQ(french.out, fixture.search(QStringLiteral("NGK19"), 20).lines);

    fixture.writeIndex(QByteArray(10, '\0'));
    const ToolRun failed = runStockSearch({fixture.prgDir(), QStringLiteral("NGK")});
    EXPECT_EQ(failed.exitCode, 1);
    EXPECT_TRUE(failed.out.isEmpty());
    EXPECT_EQ(failed.err, LoadText(79));
    ResetAppState();
}

} // namespace
