// Commands in the real main window, from the click to the painted screen, and the memory of the
// records.
#include "benchProject.h"
#include "benchWindow.h"

#include <benchmark/benchmark.h>

#include <memory>

namespace veltrona::bench {

namespace {

constexpr int rootNode = 1;
constexpr int campaignNode = 2;

/// From the week shown on opening to all dates: reads the records into memory.
void firstWideClick(benchmark::State &state, int records) {
    const QString project = projectWith(records);
    for ([[maybe_unused]] auto _ : state) {
        state.PauseTiming();
        auto window = std::make_unique<Window>(project);
        state.ResumeTiming();
        window->chooseAllDates();
        state.PauseTiming();
        window.reset();
        state.ResumeTiming();
    }
}
BENCHMARK_CAPTURE(firstWideClick, _, largeRecords)->Name("firstWideClick/large");
BENCHMARK_CAPTURE(firstWideClick, _, hugeRecords)->Name("firstWideClick/huge");

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

void bytesOfRecord(benchmark::State &state) {
    const RecordColumns &columns = *recordsOf(largeRecords).read();
    for ([[maybe_unused]] auto _ : state)
        benchmark::DoNotOptimize(columns.bytes());
    state.counters["bytes"] =
        static_cast<double>(columns.bytes()) / static_cast<double>(columns.size());
}
BENCHMARK(bytesOfRecord)->Name("memory/record");

} // namespace

} // namespace veltrona::bench
