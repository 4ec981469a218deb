// The engine on large tables, each figure beside a plain read of the same file's bytes in the
// same run (counter "ratio" = engine time / plain read time):
//   - opening "SELECT * FROM PRIXLIST ORDER BY [DESC]" on 20,000 price lists (goal: ratio < 3);
//   - a Filter + Find + Update cycle on that recordset;
//   - reading every value of every row of a 200,000-row table (its peak memory is measured from
//     outside, e.g. /usr/bin/time -f %M dbfsql DIR "SELECT * FROM STOCKBIG").
#include "data/prixfields.h"
#include "dbase/recordset.h"
#include "dbase/tablewriter.h"
#include "demotables.h"

#include <QDate>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <benchmark/benchmark.h>
#include <chrono>

namespace {

using Clock = std::chrono::steady_clock;

QTemporaryDir& workDir() {
    static QTemporaryDir dir;
    return dir;
}

// 20,000 lists in shuffled description order, 500 group codes.
const QString& prixList() {
    static const QString path = [] {
        NewTable t;
        t.fields = PrixListFields(true);
        for (int i = 0; i < 20000; ++i) {
            QVariantList row(t.fields.size());
            row[PrixField::Utiliser] = i % 3 != 0;
            row[PrixField::Desc] = QStringLiteral("Supplier %1 price list")
                                       .arg((i * 7919) % 20000, 5, 10, QLatin1Char('0'));
            row[PrixField::Fichier] = QStringLiteral("F%1").arg(i, 6, 10, QLatin1Char('0'));
            row[PrixField::DateEff] = QDate(2024, 1, 1).addDays(i % 300);
            row[PrixField::CodeGro] = QStringLiteral("G%1").arg(i % 500, 3, 10, QLatin1Char('0'));
            row[PrixField::CoutPct] = 12.5;
            row[PrixField::Fournis] = QStringLiteral("SUPPLIER %1").arg(i % 900);
            row[PrixField::CatNo] = QStringLiteral("AUT;ELE;");
            t.rows << row;
        }
        const QString p = QDir(workDir().path()).filePath("PRIXLIST.DBF");
        writeNewTable(p, t);
        return p;
    }();
    return path;
}

// 200,000 parts: part number, description, two prices, a date, a flag.
const QString& bigTable() {
    static const QString path = [] {
        NewTable t;
        t.fields = {{"NUMERO", 'C', 20, 0}, {"DESCRIPTIO", 'C', 40, 0}, {"PRIX1", 'N', 10, 2},
                    {"PRIX2", 'N', 10, 2},  {"DATEMAJ", 'D', 8, 0},     {"ACTIF", 'L', 1, 0}};
        for (int i = 0; i < 200000; ++i)
            t.rows << QVariantList{QStringLiteral("ACD-%1").arg(i, 8, 10, QLatin1Char('0')),
                                   QStringLiteral("Part number %1").arg(i),
                                   i * 0.01,
                                   i * 0.02,
                                   QDate(2020, 1, 1).addDays(i % 1000),
                                   i % 2 == 0};
        const QString p = QDir(workDir().path()).filePath("STOCKBIG.DBF");
        writeNewTable(p, t);
        return p;
    }();
    return path;
}

double secondsSince(Clock::time_point start) {
    return std::chrono::duration<double>(Clock::now() - start).count();
}

// The plain read the engine is compared with: every byte of the file into memory.
double plainRead(const QString& path) {
    const auto start = Clock::now();
    QFile f(path);
    f.open(QIODevice::ReadOnly);
    benchmark::DoNotOptimize(f.readAll());
    return secondsSince(start);
}

// Times `work` at each iteration and, outside the timing, a plain read of the same file, so that
// each figure comes with its ratio to what merely reading the bytes costs.
template <typename Work>
void timeBesidePlainRead(benchmark::State& state, const QString& path, Work work) {
    double engine = 0, plain = 0;
    for (auto _ : state) {
        const auto start = Clock::now();
        work();
        engine += secondsSince(start);
        state.PauseTiming();
        plain += plainRead(path);
        state.ResumeTiming();
    }
    state.counters["engine_ms"] = benchmark::Counter(engine * 1000 / state.iterations());
    state.counters["plain_read_ms"] = benchmark::Counter(plain * 1000 / state.iterations());
    state.counters["ratio"] = engine / plain;
}

// The price lists as the program opens them for its trees.
void openSortedPrixList(Recordset& rs, Connection& connection) {
    rs.open("SELECT * FROM PRIXLIST ORDER BY [DESC]", connection, CursorType::Keyset,
            LockType::Optimistic);
}

void BM_OpenSortedPrixList(benchmark::State& state) {
    Connection connection;
    connection.open(workDir().path());
    timeBesidePlainRead(state, prixList(), [&] {
        Recordset rs;
        openSortedPrixList(rs, connection);
        benchmark::DoNotOptimize(rs.recordCount());
    });
}
BENCHMARK(BM_OpenSortedPrixList)->Unit(benchmark::kMillisecond);

void BM_FilterFindUpdate(benchmark::State& state) {
    Connection connection;
    connection.open(workDir().path());
    Recordset rs;
    openSortedPrixList(rs, connection);
    int n = 0;
    timeBesidePlainRead(state, prixList(), [&] {
        const QString code = QStringLiteral("G%1").arg(n % 500, 3, 10, QLatin1Char('0'));
        rs.setFilter("[CODEGRO] = '" + code + "' AND [UTILISER]=True");
        rs.setFilter("");
        rs.find(QStringLiteral("FICHIER = 'F%1'").arg((n * 37) % 20000, 6, 10, QLatin1Char('0')), 0,
                SearchDirection::Forward, MoveStart::First);
        rs.setValue("CATNO", QStringLiteral("AUT;ELE;%1;").arg(n % 100));
        rs.update();
        ++n;
    });
}
BENCHMARK(BM_FilterFindUpdate)->Unit(benchmark::kMillisecond);

void BM_ReadEveryRow200k(benchmark::State& state) {
    const QString path = bigTable();
    Connection connection;
    connection.open(workDir().path());
    timeBesidePlainRead(state, path, [&] {
        Recordset rs;
        rs.open("STOCKBIG", connection, CursorType::Keyset, LockType::ReadOnly);
        for (; !rs.eof(); rs.moveNext())
            for (int i = 0; i < rs.fieldCount(); ++i)
                benchmark::DoNotOptimize(rs.value(i));
    });
    state.counters["file_MB"] = double(QFile(path).size()) / (1024 * 1024);
}
BENCHMARK(BM_ReadEveryRow200k)->Unit(benchmark::kMillisecond);

} // namespace

BENCHMARK_MAIN();
