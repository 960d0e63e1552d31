// The views of a large project, each compared with SQLite's own answer to the same question.
// "SUBJECT/ours" and "SUBJECT/baseline" are a pair; bench/ratios.py has the limits.
#include "benchProject.h"

#include "core/analysis/chart/chartSeries.h"
#include "core/analysis/grid/nodeStatistics.h"
#include "core/analysis/grid/statisticsGrid.h"
#include "core/analysis/tree/navigationTexts.h"
#include "core/analysis/tree/navigationTree.h"

#include <benchmark/benchmark.h>

#include <map>
#include <string>
#include <vector>

namespace veltrona::bench {

namespace {

/// The tree of the project: its first node is the root, the second a campaign.
Tree &treeOf(int records) {
    static std::map<int, Tree> trees;
    Tree &tree = trees[records];
    if (tree.Nodes().Count() == 0)
        buildNavigationTree(connectionTo(records), QStringLiteral("large"), tree);
    return tree;
}

DateRange oneWeek() {
    const DateValue start = firstDay() + 200;
    return {start, start + 6};
}

/// A refresh without the chart, and without a real font for the widths.
void refresh(benchmark::State &state, ProjectRecords &records, const TreeNode &node,
             const DateRange &range) {
    Grid grid(gridColumn::Count);
    initGrid(grid, true);
    resetSummary(grid);
    const auto width = [](const QString &text) { return 90.0F * static_cast<float>(text.size()); };
    for ([[maybe_unused]] auto _ : state) {
        fillGrid(queryNodeStatistics(records, pathOf(node), range), grid, true);
        sumUp(grid, true);
        sizeColumns(grid, -1, width);
        benchmark::DoNotOptimize(grid.TextMatrix(1, 1));
    }
    if (grid.Rows() != (node.Parent ? adGroups : campaigns) + 3)
        state.SkipWithError("the grid doesn't show the names");
}

constexpr int rootNode = 1;
constexpr int campaignNode = 2;

const TreeNode &nodeOf(int records, int node) {
    return *treeOf(records).Nodes().Item(node);
}

/// Runs a query to its end repeatedly.
void ask(benchmark::State &state, const std::string &sql, const std::vector<QString> &bindings,
         int records = largeRecords) {
    const sqlite::Connection &connection = connectionTo(records);
    qint64 rows = 0;
    for ([[maybe_unused]] auto _ : state) {
        sqlite::Statement statement = connection.prepare(sql);
        int parameter = 0;
        for (const QString &text : bindings)
            statement.bind(++parameter, text);
        for (rows = 0; statement.step(); ++rows)
            benchmark::DoNotOptimize(statement.real(1));
    }
    if (rows == 0)
        state.SkipWithError("no rows");
}

std::vector<QString> ends(const DateRange &range) {
    return {isoText(range.start), isoText(range.end)};
}

void refreshYear(benchmark::State &state, int records, int node) {
    refresh(state, recordsOf(records), nodeOf(records, node), daysOf(records));
}
void plainScan(benchmark::State &state, int records) {
    ask(state, std::string("SELECT ") + twelveSums + " FROM tblGoogleDays", {}, records);
}
BENCHMARK_CAPTURE(refreshYear, _, largeRecords, rootNode)->Name("refreshRoot/large");
BENCHMARK_CAPTURE(refreshYear, _, largeRecords, campaignNode)->Name("refreshCampaign/large");
BENCHMARK_CAPTURE(refreshYear, _, smallRecords, rootNode)->Name("refreshRoot/small");
BENCHMARK_CAPTURE(plainScan, _, largeRecords)->Name("plainScan/large");
BENCHMARK_CAPTURE(plainScan, _, hugeRecords)->Name("plainScan/huge");

void refreshWeek(benchmark::State &state, bool inMemory) {
    ProjectRecords stored(connectionTo(largeRecords), 0);
    refresh(state, inMemory ? recordsOf(largeRecords) : stored, nodeOf(largeRecords, rootNode),
            oneWeek());
}
void refreshWeekBaseline(benchmark::State &state) {
    ask(state,
        std::string("SELECT ") + twelveSums +
            " FROM tblGoogleDays INDEXED BY idxDate WHERE GoogleDate >= ? AND GoogleDate <= ?",
        ends(oneWeek()));
}
BENCHMARK_CAPTURE(refreshWeek, _, true)->Name("refreshWeek/memory");
BENCHMARK_CAPTURE(refreshWeek, _, false)->Name("refreshWeek/index");
BENCHMARK(refreshWeekBaseline)->Name("refreshWeek/baseline");

constexpr int averageCpc = 0; // a mean
constexpr int clicks = 3;     // a plain sum

/// 360 days make 90 bars of four days each.
ChartRequest ninetyBars(int metric, const TreeNode &node) {
    ChartRequest request;
    request.metric = metric;
    request.range = {static_cast<DateValue>(firstDay()), firstDay() + 359.0};
    request.path = pathOf(node);
    return request;
}

void chart(benchmark::State &state, int metric, int node) {
    const ChartRequest request = ninetyBars(metric, nodeOf(largeRecords, node));
    ProjectRecords &records = recordsOf(largeRecords);
    Chart shown;
    for ([[maybe_unused]] auto _ : state)
        showSeries(queryChartSeries(records, request), shown);
    if (shown.RowCount() != 90)
        state.SkipWithError("not 90 bars");
}

void chartBaseline(benchmark::State &state) {
    ask(state,
        "SELECT GoogleDate, sum(Clicks), count(*) FROM tblGoogleDays WHERE GoogleDate >= ? AND "
        "GoogleDate <= ? GROUP BY GoogleDate",
        ends(ninetyBars(clicks, nodeOf(largeRecords, rootNode)).range));
}

BENCHMARK_CAPTURE(chart, _, clicks, rootNode)->Name("chartRootSum/ours");
BENCHMARK_CAPTURE(chart, _, averageCpc, rootNode)->Name("chartRootMean/ours");
BENCHMARK_CAPTURE(chart, _, clicks, campaignNode)->Name("chartCampaignSum/ours");
BENCHMARK_CAPTURE(chart, _, averageCpc, campaignNode)->Name("chartCampaignMean/ours");
BENCHMARK(chartBaseline)->Name("chart/baseline");

void tree(benchmark::State &state, int records) {
    const sqlite::Connection &connection = connectionTo(records);
    Tree built;
    for ([[maybe_unused]] auto _ : state)
        buildNavigationTree(connection, QStringLiteral("large"), built);
    if (built.Nodes().Count() < campaigns * adGroups)
        state.SkipWithError("the tree is incomplete");
}
void treeBaseline(benchmark::State &state) {
    ask(state, "SELECT DISTINCT Campaign, Adgroup, KeyWord, kwType FROM tblGoogleDays", {});
}
BENCHMARK_CAPTURE(tree, _, largeRecords)->Name("tree/ours");
BENCHMARK(treeBaseline)->Name("tree/baseline");
BENCHMARK_CAPTURE(tree, _, smallRecords)->Name("tree/small");

} // namespace

} // namespace veltrona::bench
