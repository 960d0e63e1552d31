// Commands in the real main window, from the click to the painted screen, and the memory of the
// records.
#include "benchProject.h"
#include "benchWindow.h"

#include "core/database/projectFile.h"
#include "core/shell/modMain.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QFile>

#include <benchmark/benchmark.h>

#include <algorithm>
#include <chrono>
#include <ctime>
#include <memory>
#include <string>

namespace veltrona::bench {

namespace {

constexpr int rootNode = 1;
constexpr int campaignNode = 2;

/// The real time of one plain scan, beside the same other work on the machine.
std::chrono::nanoseconds timeOfScan(int records) {
    const auto begin = std::chrono::steady_clock::now();
    sqlite::Statement scan =
        connectionTo(records).prepare(std::string("SELECT ") + twelveSums + " FROM tblGoogleDays");
    scan.step();
    return std::chrono::steady_clock::now() - begin;
}

/// From the week shown on opening to all dates, after a rest of so many plain scans. Reads what
/// isn't in memory by then.
void firstWideClick(benchmark::State &state, int records, double scans) {
    const QString project = projectWith(records);
    for ([[maybe_unused]] auto _ : state) {
        state.PauseTiming();
        const std::chrono::duration<double, std::nano> rest = scans * timeOfScan(records);
        auto window = std::make_unique<Window>(project);
        if (scans > 0)
            window->rest(duration_cast<std::chrono::nanoseconds>(rest));
        state.ResumeTiming();
        window->chooseAllDates();
        state.PauseTiming();
        window.reset();
        state.ResumeTiming();
    }
}
BENCHMARK_CAPTURE(firstWideClick, _, largeRecords, 2.5)
    ->Name("firstWideClick/large")
    ->Iterations(1);
BENCHMARK_CAPTURE(firstWideClick, _, hugeRecords, 2.5)->Name("firstWideClick/huge")->Iterations(1);
BENCHMARK_CAPTURE(firstWideClick, _, largeRecords, 0)->Name("wideClickAtOnce/large")->Iterations(1);
BENCHMARK_CAPTURE(firstWideClick, _, hugeRecords, 0)->Name("wideClickAtOnce/huge")->Iterations(1);

/// The longest pass of the event loop while all records are read ahead, and a key moves in the tree
/// now and then: so long may an event have to wait for a slice. Processor time.
void pauseOfReading(benchmark::State &state, int records) {
    const QString project = projectWith(records);
    double longest = 0;
    for ([[maybe_unused]] auto _ : state) {
        Window window(project);
        QElapsedTimer sinceKey;
        sinceKey.start();
        Qt::Key key = Qt::Key_Down;
        while (!modMain::Records->held()) {
            if (sinceKey.hasExpired(300)) {
                window.press(key); // and shows its node
                key = key == Qt::Key_Down ? Qt::Key_Up : Qt::Key_Down;
                sinceKey.start();
            }
            const std::clock_t begin = std::clock();
            QCoreApplication::processEvents();
            longest = std::max(longest, static_cast<double>(std::clock() - begin));
        }
    }
    state.counters["count"] = longest * 1000 / CLOCKS_PER_SEC;
}
BENCHMARK_CAPTURE(pauseOfReading, _, largeRecords)->Name("pauseOfReading/large")->Iterations(1);
BENCHMARK_CAPTURE(pauseOfReading, _, hugeRecords)->Name("pauseOfReading/huge")->Iterations(1);

/// Clicks on a node while another is shown.
void click(benchmark::State &state, int records, int node) {
    Window window(projectWith(records));
    window.chooseAllDates();
    for ([[maybe_unused]] auto _ : state) {
        state.PauseTiming();
        window.click(rootNode + campaignNode - node);
        state.ResumeTiming();
        window.click(node);
    }
}
BENCHMARK_CAPTURE(click, _, largeRecords, rootNode)->Name("clickRoot/large");
BENCHMARK_CAPTURE(click, _, largeRecords, campaignNode)->Name("clickCampaign/large");
BENCHMARK_CAPTURE(click, _, hugeRecords, rootNode)->Name("clickRoot/huge");

void metric(benchmark::State &state, int records) {
    Window window(projectWith(records));
    window.chooseAllDates();
    int index = 0;
    for ([[maybe_unused]] auto _ : state)
        window.chooseMetric(++index % 12);
}
BENCHMARK_CAPTURE(metric, _, largeRecords)->Name("metric/large");
BENCHMARK_CAPTURE(metric, _, hugeRecords)->Name("metric/huge");

constexpr int gridRows = 30'000;

/// One ad group of 30,000 keywords, a record a day for each in a week; made once for each run.
QString projectOfWideGrid() {
    static const QString path = QStringLiteral(BENCH_FOLDER "/wide-grid.vlt");
    static bool isMade = false;
    if (isMade)
        return path;
    makeProject(QCoreApplication::applicationDirPath() + QStringLiteral("/data.dat"), path);
    const auto connection = openProject(path);
    // A day at a time: a statement's work is limited by the size of the file.
    sqlite::Statement fill = connection->prepare(
        "WITH leaf(i) AS (SELECT ?2 UNION ALL SELECT i + 1 FROM leaf WHERE i < ?2 + 2999) "
        "INSERT INTO tblGoogleDays (Campaign, Adgroup, KeyWord, kwType, AdwordsTyp, GoogleDate, "
        "Clicks, Impressions, ctr, cpc, cost, conv, Pos, ConvValue, Transactions) "
        "SELECT 'Campaign', 'Ad group', char(97 + i % 26, 97 + i / 26 % 26, 97 + i / 676 % 26, "
        "97 + i / 17576) || ' shoes for women', 'Broad', 'Search Only', "
        "printf('2025-01-%02d', ?1), i % 17, 1 + (i * 7 + ?1) % 411, i % 17 * 1.37, "
        "120000 + i % 50 * 10000, (120000 + i % 50 * 10000) * (i % 17), i % 17 / 7, "
        "(11 + i % 50) / 10.0, i % 17 / 7 * 24.9, i % 17 / 7 FROM leaf");
    sqlite::Transaction transaction(*connection);
    for (qint64 day = 1; day <= 7; ++day) {
        for (qint64 leaf = 0; leaf < gridRows; leaf += 3000) {
            fill.bind(1, day);
            fill.bind(2, leaf);
            fill.step();
            fill.reset();
        }
    }
    transaction.commit();
    isMade = true;
    return path;
}

/// Shows 30,000 rows, after the rows of another node.
void clickWideGrid(benchmark::State &state) {
    constexpr int wideNode = 4; // the search branch
    Window window(projectOfWideGrid());
    window.chooseAllDates();
    for ([[maybe_unused]] auto _ : state) {
        state.PauseTiming();
        window.click(campaignNode);
        state.ResumeTiming();
        window.click(wideNode);
    }
    if (window.rows() != gridRows)
        state.SkipWithError("rows are missing");
}
BENCHMARK(clickWideGrid)->Name("clickWideGrid/ours");

/// The memory of the process with such a grid and its tree shown, in MiB.
void memoryOfWideGrid(benchmark::State &state) {
    constexpr int wideNode = 4;
    Window window(projectOfWideGrid());
    window.chooseAllDates();
    for ([[maybe_unused]] auto _ : state)
        window.click(wideNode);
    QFile status(QStringLiteral("/proc/self/statm"));
    if (!status.open(QIODevice::ReadOnly))
        state.SkipWithError("no memory");
    state.counters["count"] = status.readAll().split(' ').value(1).toDouble() * 4 / 1024;
}
BENCHMARK(memoryOfWideGrid)->Name("memory/wideGrid")->Iterations(1);

void bytesOfRecord(benchmark::State &state) {
    const RecordColumns &columns = *recordsOf(largeRecords).read();
    for ([[maybe_unused]] auto _ : state)
        benchmark::DoNotOptimize(columns.bytes());
    state.counters["count"] =
        static_cast<double>(columns.bytes()) / static_cast<double>(columns.size());
}
BENCHMARK(bytesOfRecord)->Name("memory/record");

} // namespace

} // namespace veltrona::bench
