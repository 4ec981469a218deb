// The refresh of the whole view (SetupCat then SetupList, with Catalist) on a large
// installation: 5,000 price lists and 500 catalogues, three lists in four activated, and about
// half of the activated lists associated with one to three catalogues. The same at twice the
// size shows that a rebuild grows linearly.

#include "../tests/pricelists/listtables.h"

#include "dbase/connection.h"
#include "dbase/recordset.h"
#include "pricelists/configpane.h"
#include "pricelists/pricelistsui.h"
#include "pricelists/treepanes.h"

#include <QApplication>
#include <QHBoxLayout>
#include <QTemporaryDir>
#include <benchmark/benchmark.h>
#include <memory>

namespace {

// Catalogue codes of three characters: A00, A01, ... in base 36.
QString catalogueCode(int i) {
    const QString digits = QStringLiteral("0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZ");
    return QString(QLatin1Char('A' + i / 1296)) + digits.at(i / 36 % 36) + digits.at(i % 36);
}

bool catalogueActivated(int i) {
    return i % 5 != 0;
}

QList<CatalogueRow> catalogueRows(int catalogues) {
    QList<CatalogueRow> rows;
    for (int i = 0; i < catalogues; ++i) {
        const QDate eff = FixtureToday.addDays(-(i % 90));
        rows << CatalogueRow{catalogueCode(i), QStringLiteral("Catalogue %1").arg(i, 4),
                             catalogueActivated(i), eff, i % 7 == 0 ? eff.addDays(-30) : eff};
    }
    return rows;
}

QList<ListRow> listRows(int lists, int catalogues) {
    QList<ListRow> rows;
    for (int i = 0; i < lists; ++i) {
        ListRow row;
        row.desc = QStringLiteral("SUPPLIER %1 - PRODUCT LINE %2").arg(i % 700, 3).arg(i, 4);
        row.fichier = QStringLiteral("L%1").arg(i, 5, 10, QLatin1Char('0'));
        row.utiliser = i % 4 != 3;
        const QDate eff = FixtureToday.addDays(i % 11 == 0 ? 5 : -(i % 60));
        row.dateEff = eff;
        if (i % 6 != 1)
            row.dateStk = i % 6 == 2 ? eff.addMonths(-1) : eff;
        row.codeGro = QStringLiteral("G%1").arg(i % 400, 3, 10, QLatin1Char('0'));
        row.ficFamille = i % 3 == 0 ? QStringLiteral("MAT%1").arg(i % 100) : QString();
        if (row.utiliser && i % 2 == 0)
            for (int k = 0; k <= i % 3; ++k) {
                int cat = (i * 7 + k * 131) % catalogues;
                while (!catalogueActivated(cat))
                    cat = (cat + 1) % catalogues;
                row.catNo += catalogueCode(cat) + QLatin1Char(';');
            }
        rows << row;
    }
    return rows;
}

struct Installation {
    QTemporaryDir dir;
    Connection conn;
    Recordset rsPrixList;
    Recordset rsCataList;
    PriceListState state;
    QWidget window;
    ListTreePane* listPane = nullptr;
    CatTreePane* catPane = nullptr;
    PriceListsUi* ui = nullptr; // a child of the window

    Installation(int lists, int catalogues) {
        WritePrixList(dir.path(), listRows(lists, catalogues));
        WriteCataList(dir.path(), catalogueRows(catalogues));
        conn.open(dir.path() + QLatin1Char('/'));
        rsPrixList.open(QStringLiteral("SELECT * FROM PRIXLIST ORDER BY [DESC]"), conn,
                        CursorType::Keyset, LockType::Optimistic);
        rsCataList.open(QStringLiteral("SELECT * FROM CATALIST ORDER BY [DESC]"), conn,
                        CursorType::Keyset, LockType::Optimistic);
        state.Today = [] { return FixtureToday; };
        auto* layout = new QHBoxLayout(&window);
        listPane = new ListTreePane(&window);
        catPane = new CatTreePane(&window);
        layout->addWidget(listPane);
        layout->addWidget(catPane);
        ui = new PriceListsUi({*listPane, *catPane, *new ConfigPane(&window)}, state,
                              {rsPrixList, rsCataList}, &window);
        window.resize(1200, 600);
        window.show();
        // A few marks, as a dealer's selection keeps them across the rebuilds.
        state.ListMarks.redim(lists);
        for (int r = 0; r < lists; r += 50)
            state.ListMarks(0, r) = QStringLiteral("X");
    }
};

void BM_SetupCatSetupList(benchmark::State& bench) {
    const int lists = int(bench.range(0));
    const int catalogues = int(bench.range(1));
    Installation installation(lists, catalogues);
    installation.ui->refresh(); // the first build, as the window's load makes it
    for (auto _ : bench)
        installation.ui->refresh();
    bench.counters["lists"] = lists;
    bench.counters["catalogues"] = catalogues;
    bench.counters["children"] = installation.catPane->tvwCat[0]->nodeCount() -
                                 installation.catPane->tvwCat[0]->topLevelItemCount();
}
// Run with --benchmark_repetitions=9 --benchmark_report_aggregates_only=true for the median.
BENCHMARK(BM_SetupCatSetupList)
    ->Args({5000, 500})
    ->Args({10000, 1000})
    ->Unit(benchmark::kMillisecond)
    ->UseRealTime();

} // namespace

int main(int argc, char** argv) {
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
