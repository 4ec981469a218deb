// The part search on parts files of 10,000 and 1,000,000 parts, and beside it SQLite answering
// the same prefix queries on the same parts (number >= key and < the key's successor, ORDER BY
// number, LIMIT 20, with an index on the number).
//
// Each iteration is one search; the counters give the median and 99th percentile of a search in
// microseconds, and the index pages and records read per search.
#include "app/appstate.h"
#include "partsfile/cp1252.h"
#include "partsfile/modntx.h"
#include "partsfile/ntxlayout.h"
#include "stockfixtures/stockgenerator.h"

#include <QByteArray>
#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QtEndian>
#include <algorithm>
#include <benchmark/benchmark.h>
#include <chrono>
#include <map>
#include <memory>
#include <random>
#include <sqlite3.h>
#include <vector>

namespace {

constexpr int LinesPerSearch = 20;
const QStringList GroupCodes = {
    QStringLiteral("ACD"),  QStringLiteral("BOS"), QStringLiteral("CHA"), QStringLiteral("DAY"),
    QStringLiteral("MOOG"), QStringLiteral("NGK"), QStringLiteral("SKF"), QStringLiteral("TIM"),
    QStringLiteral("WIX"),  QStringLiteral("WAG")};

// One parts file with its SQLite copy and the searched texts.
struct PartsSet {
    QTemporaryDir dir;
    int depth = 0;
    std::vector<QString> texts;
    sqlite3* db = nullptr;
    sqlite3_stmt* query = nullptr;

    ~PartsSet() {
        sqlite3_finalize(query);
        sqlite3_close(db);
    }
};

void exec(sqlite3* db, const char* sql) {
    char* error = nullptr;
    if (sqlite3_exec(db, sql, nullptr, nullptr, &error) != SQLITE_OK) {
        qFatal("sqlite: %s", error);
    }
}

// Copies the parts of STOCK.DBF into an SQLite table with an index on the number.
void loadSqlite(PartsSet& set) {
    using namespace StockLayout;
    QFile table(set.dir.filePath(QStringLiteral("PRG/STOCK.DBF")));
    if (!table.open(QIODevice::ReadOnly))
        qFatal("no STOCK.DBF");
    const QByteArray bytes = table.readAll();
    const int headerLength = qFromLittleEndian<qint16>(bytes.constData() + HeaderLengthAt);
    const int recordLength = qFromLittleEndian<qint16>(bytes.constData() + RecordLengthAt);
    const QByteArray path = set.dir.filePath(QStringLiteral("stock.sqlite")).toUtf8();
    sqlite3_open(path.constData(), &set.db);
    exec(set.db, "CREATE TABLE stock (numero TEXT, descript TEXT, prix1 TEXT, prix2 TEXT, "
                 "prix3 TEXT, prix4 TEXT, coutant TEXT, famille TEXT)");
    exec(set.db, "BEGIN");
    sqlite3_stmt* insert = nullptr;
    sqlite3_prepare_v2(set.db, "INSERT INTO stock VALUES (?1, ?2, ?3, ?4, ?5, ?6, ?7, ?8)", -1,
                       &insert, nullptr);
    const auto bind = [&](int column, const char* record, int at, int width) {
        const QByteArray text = DecodeCp1252(record + at, width).toUtf8();
        sqlite3_bind_text(insert, column, text.constData(), int(text.size()), SQLITE_TRANSIENT);
    };
    for (qint64 at = headerLength; at + recordLength <= bytes.size(); at += recordLength) {
        const char* record = bytes.constData() + at;
        bind(1, record, NumberAt, NumberWidth);
        bind(2, record, DescriptionAt, DescriptionWidth);
        for (int p = 0; p < 4; ++p)
            bind(3 + p, record, PricesAt + p * PriceWidth, PriceWidth);
        bind(7, record, CostAt, CostWidth);
        bind(8, record, FamilyAt, FamilyWidth);
        sqlite3_step(insert);
        sqlite3_reset(insert);
    }
    sqlite3_finalize(insert);
    exec(set.db, "COMMIT");
    exec(set.db, "CREATE INDEX stock_numero ON stock (numero)");
    sqlite3_prepare_v2(set.db,
                       "SELECT numero, descript, prix1, prix2, prix3, prix4, coutant, famille "
                       "FROM stock WHERE numero >= ?1 AND numero < ?2 ORDER BY numero LIMIT ?3",
                       -1, &set.query, nullptr);
}

PartsSet& partsSet(int parts) {
    static std::map<int, std::unique_ptr<PartsSet>> sets;
    std::unique_ptr<PartsSet>& set = sets[parts];
    if (set)
        return *set;
    set = std::make_unique<PartsSet>();
    StockGeneration generation;
    generation.parts = parts;
    generation.prefixes = GroupCodes;
    generation.index.keysPerPage = 28;
    generation.index.clipperUpdated = true;
    const StockFiles files = WriteStockFiles(set->dir.filePath(QStringLiteral("PRG")), generation);
    if (!files.written)
        qFatal("cannot write the parts file");
    set->depth = files.depth;
    loadSqlite(*set);
    // What a clerk types: a group code and the first characters of a number, in small letters
    // now and then; kept when the search fills its 20 lines.
    std::vector<QString> sorted = files.numbers;
    std::sort(sorted.begin(), sorted.end());
    const auto matches = [&sorted](const QString& text) {
        const auto first = std::lower_bound(sorted.begin(), sorted.end(), text);
        auto last = first;
        while (last != sorted.end() && last - first < LinesPerSearch && last->startsWith(text))
            ++last;
        return last - first;
    };
    std::mt19937 rng(77);
    while (set->texts.size() < 1000) {
        const QString& number = files.numbers[rng() % files.numbers.size()];
        const qsizetype group = number.startsWith(QStringLiteral("MOOG")) ? 4 : 3;
        const QString text = number.left(group + qsizetype(rng() % 4));
        if (matches(text) >= LinesPerSearch)
            set->texts.push_back(rng() % 4 == 0 ? text.toLower() : text);
    }
    return *set;
}

struct Timings {
    std::vector<double> micros;
    void add(std::chrono::steady_clock::duration d) {
        micros.push_back(std::chrono::duration<double, std::micro>(d).count());
    }
    void report(benchmark::State& state) {
        std::sort(micros.begin(), micros.end());
        state.counters["median_us"] = micros[micros.size() / 2];
        state.counters["p99_us"] = micros[std::min(micros.size() - 1, micros.size() * 99 / 100)];
    }
};

void SearchStockBench(benchmark::State& state) {
    App().Settings.Nation = 1000;
    PartsSet& set = partsSet(int(state.range(0)));
    const QString prg = set.dir.filePath(QStringLiteral("PRG"));
    Timings timings;
    qint64 pages = 0, records = 0, lines = 0, searches = 0;
    for (auto _ : state) {
        const QString& text = set.texts[size_t(searches % qint64(set.texts.size()))];
        const auto start = std::chrono::steady_clock::now();
        qint32 maxLines = LinesPerSearch;
        const modNTX::StockSearchOutcome outcome =
            modNTX::SearchStockIn(prg, text, maxLines, [&lines](const QString& line) {
                benchmark::DoNotOptimize(line.size());
                ++lines;
            });
        timings.add(std::chrono::steady_clock::now() - start);
        if (!outcome.ok())
            state.SkipWithError("search failed");
        pages += outcome.counters.pagesRead;
        records += outcome.counters.recordsRead;
        ++searches;
    }
    timings.report(state);
    state.counters["pages"] = double(pages) / double(searches);
    state.counters["records"] = double(records) / double(searches);
    state.counters["lines"] = double(lines - searches) / double(searches); // without the heading
    state.counters["depth"] = set.depth;
}

// The same query on SQLite: the connection and the prepared statement stay open, the rows are
// turned into the same lines.
void SqliteBench(benchmark::State& state) {
    PartsSet& set = partsSet(int(state.range(0)));
    Timings timings;
    qint64 lines = 0, searches = 0;
    for (auto _ : state) {
        const QString key = set.texts[size_t(searches % qint64(set.texts.size()))].toUpper();
        const auto start = std::chrono::steady_clock::now();
        QString upper = key;
        upper.back() = QChar(upper.back().unicode() + 1);
        const QByteArray from = key.toUtf8();
        const QByteArray to = upper.toUtf8();
        sqlite3_bind_text(set.query, 1, from.constData(), int(from.size()), SQLITE_STATIC);
        sqlite3_bind_text(set.query, 2, to.constData(), int(to.size()), SQLITE_STATIC);
        sqlite3_bind_int(set.query, 3, LinesPerSearch);
        while (sqlite3_step(set.query) == SQLITE_ROW) {
            QString line;
            for (int column = 0; column < 8; ++column) {
                if (column == 7)
                    line += u' ';
                line += QString::fromUtf8(
                    reinterpret_cast<const char*>(sqlite3_column_text(set.query, column)),
                    sqlite3_column_bytes(set.query, column));
            }
            benchmark::DoNotOptimize(line.size());
            ++lines;
        }
        sqlite3_reset(set.query);
        timings.add(std::chrono::steady_clock::now() - start);
        ++searches;
    }
    timings.report(state);
    state.counters["lines"] = double(lines) / double(searches);
}

BENCHMARK(SearchStockBench)
    ->Arg(10000)
    ->Arg(1000000)
    ->Iterations(20000)
    ->Unit(benchmark::kMicrosecond);
BENCHMARK(SqliteBench)->Arg(10000)->Arg(1000000)->Iterations(20000)->Unit(benchmark::kMicrosecond);

} // namespace

int main(int argc, char** argv) {
    QCoreApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
