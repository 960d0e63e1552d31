// The HTML report of a very long grid, compared with the same bytes written line by line.
#include "benchProject.h"

#include "core/analysis/grid/statisticsGrid.h"
#include "core/report/reportWriter.h"

#include <QFile>

#include <benchmark/benchmark.h>

#include <fstream>
#include <string>
#include <vector>

namespace veltrona::bench {

namespace {

constexpr int rows = 32'767;
constexpr const char *ourFile = BENCH_FOLDER "/ours.html";
constexpr const char *otherFile = BENCH_FOLDER "/other.html";

void fill(Grid &grid) {
    initGrid(grid, true);
    grid.setRows(rows + 3);
    for (int row = 1; row <= rows; ++row) {
        grid.setTextMatrix(row, gridColumn::Name, QStringLiteral("Schlüsselwort %1").arg(row));
        for (int col = 1; col < gridColumn::Count; ++col)
            grid.setTextMatrix(row, col, QString::number(row * col / 7.0, 'f', 2));
    }
    resetSummary(grid);
}

void writeOurs(Grid &grid) {
    ReportSource source;
    source.range = daysOf(largeRecords);
    source.grid = &grid;
    source.options.graph = false;
    source.locale = QLocale::c();
    writeReport(QString::fromUtf8(ourFile), true, source);
}

void report(benchmark::State &state) {
    Grid grid(gridColumn::Count);
    fill(grid);
    for ([[maybe_unused]] auto _ : state)
        writeOurs(grid);
}

void reportBaseline(benchmark::State &state) {
    Grid grid(gridColumn::Count);
    fill(grid);
    writeOurs(grid);
    std::vector<std::string> lines;
    std::ifstream written(ourFile, std::ios::binary);
    for (std::string line; std::getline(written, line);)
        lines.push_back(line + '\n');
    for ([[maybe_unused]] auto _ : state) {
        std::ofstream file(otherFile, std::ios::binary);
        for (const std::string &line : lines)
            file << line;
    }
    if (lines.size() < rows)
        state.SkipWithError("the report is incomplete");
}

BENCHMARK(report)->Name("report/ours")->UseRealTime();
BENCHMARK(reportBaseline)->Name("report/baseline")->UseRealTime();

} // namespace

} // namespace veltrona::bench
