// The price-list table conversion of a dealer with 20,000 lists in the 45-field form and 200
// catalogues, beside a plain copy of the same PRIXLIST file.
#include "convert/oldtables.h"

#include "app/appstate.h"
#include "dbase/connection.h"
#include "partsfile/modnvconvert.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <benchmark/benchmark.h>

namespace {

constexpr int ListCount = 20000;
constexpr int CatalogueCount = 200;
constexpr int GroupCodes = 400;

struct Installation {
    Installation() {
        WriteOldPrixList(saved(), ManyLists(ListCount, GroupCodes));
        WriteCataList(saved(), ManyCatalogues(CatalogueCount, GroupCodes));
        QDir().mkpath(work());
    }
    QString saved() const { return root.path() + u'/'; }
    QString work() const { return root.path() + QStringLiteral("/work/"); }
    void restore() const {
        for (const QString& name : QDir(work()).entryList(QDir::Files))
            QFile::remove(work() + name);
        for (const char* name : {"PRIXLIST.DBF", "CATALIST.DBF"})
            QFile::copy(saved() + QLatin1String(name), work() + QLatin1String(name));
    }
    QTemporaryDir root;
};

const Installation& installation() {
    static const Installation install;
    return install;
}

void BM_NormalConversion(benchmark::State& state) {
    const Installation& install = installation();
    App().Settings.Nation = 1000;
    for (auto _ : state) {
        state.PauseTiming();
        install.restore();
        Connection data;
        data.open(install.work());
        state.ResumeTiming();
        modNVConvert::ConversionObserver quiet;
        modNVConvert::ConvertTable(data, quiet);
    }
    state.counters["lists"] = ListCount;
    state.counters["catalogues"] = CatalogueCount;
}
BENCHMARK(BM_NormalConversion)->Unit(benchmark::kMillisecond)->UseRealTime();

void BM_CopyPriceListFile(benchmark::State& state) {
    const Installation& install = installation();
    const QString from = install.saved() + QStringLiteral("PRIXLIST.DBF");
    const QString to = install.work() + QStringLiteral("COPY.DBF");
    for (auto _ : state) {
        QFile::remove(to);
        QFile::copy(from, to);
    }
    state.counters["bytes"] = double(QFile(from).size());
}
BENCHMARK(BM_CopyPriceListFile)->Unit(benchmark::kMillisecond)->UseRealTime();

} // namespace

int main(int argc, char** argv) {
    QCoreApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
