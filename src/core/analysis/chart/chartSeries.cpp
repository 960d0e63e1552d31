#include "core/analysis/chart/chartSeries.h"

#include "core/analysis/records/cellText.h"
#include "core/analysis/records/recordWalk.h"
#include "core/controls/comboBox.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>

namespace veltrona {

namespace {

struct Metric {
    const char *caption;
    Figure figure;
    double divisor;
    bool aboveZero; // other records don't count
    bool averaged;  // over the records whose value isn't 0
};

constexpr auto metrics = std::to_array<Metric>({
    {"Average Cost Per Click", Figure::Cpc, millionths, false, true},
    {"Budget", Figure::Budget, millionths, false, false},
    {"Click Through Rate", Figure::Ctr, 1, false, false},
    {"Clicks", Figure::Clicks, 1, false, false},
    {"Conversions", Figure::Conv, 1, false, false},
    {"Cost Per Conversion", Figure::ConvCost, 1, false, false},
    {"Costs", Figure::Cost, millionths, false, false},
    {"Impressions", Figure::Impressions, 1, false, false},
    // Not divided, and the next by ten million (docs/oddities.md).
    {"Max Content CPC", Figure::MaxContentCpc, 1, true, false},
    {"Max CPC", Figure::MaxCpc, 10 * millionths, true, false},
    {"Position", Figure::Pos, 1, false, true},
    {"Transactions", Figure::Transactions, 1, false, false},
});

/// Compensated summation, so that the order of the records doesn't matter.
class BarSum {
public:
    void add(double value) {
        const double sum = m_sum + value;
        m_lost +=
            std::abs(m_sum) >= std::abs(value) ? (m_sum - sum) + value : (value - sum) + m_sum;
        m_sum = sum;
        valued += value != 0;
    }
    double value() const { return std::isfinite(m_sum) ? m_sum + m_lost : m_sum; }

    bool hasRecords = false;
    qint64 valued = 0; // records whose value isn't 0

private:
    double m_sum = 0;
    double m_lost = 0;
};

/// Finds the bar of a date by its text. Boundaries are midnights: a later time of the same day
/// belongs to the next bar.
class BarFinder {
public:
    explicit BarFinder(const std::vector<ChartBar> &bars) {
        for (const ChartBar &bar : bars)
            m_boundaries.push_back(isoText(bar.toDay).toStdString());
    }

    /// -1 if no bar counts the date.
    int find(std::string_view date) {
        if (date != m_date) {
            m_date = date;
            const auto bar = std::lower_bound(m_boundaries.begin(), m_boundaries.end(), date);
            m_bar = bar == m_boundaries.end() || date < m_boundaries.front()
                        ? -1
                        : static_cast<int>(bar - m_boundaries.begin());
        }
        return m_bar;
    }

private:
    std::vector<std::string> m_boundaries;
    std::string m_date; // of the last call: records of a day are mostly neighbours
    int m_bar = -1;
};

DateValue asDate(int day) {
    return static_cast<DateValue>(day);
}

template<class Record>
bool counts(const Metric &metric, const Record &record) {
    return !metric.aboveZero || isAboveZero(record[0]);
}

/// Only needed where all bars are 0. What no bar counts comes after the last one.
ChartSurroundings surroundings(ProjectRecords &records, const Metric &metric, const NodePath &path,
                               const ChartSeries &series) {
    ChartSurroundings found{series.range}; // unreadable dates are reported by "All"
    BarFinder finder(series.bars);
    const RecordQuery query{path,
                            {asDate(series.bars.back().toDay), series.range.end},
                            {},
                            [&finder](auto date) { return finder.find(date.front()) < 0 ? 0 : -1; },
                            {&metric.figure, 1}};
    const auto look = [&](int, const auto &record) {
        found.inRange = true;
        if (counts(metric, record) && storedNumberOf(record[0]) != 0)
            found.hasUncountedValues = true;
    };
    visitRecords(records, query, [&](const auto &batch, auto) { forEachRecord(batch, look); });
    try {
        found.table = tableDates(records);
    } catch (const Failure &) {
    }
    return found;
}

std::vector<BarSum> sumUpBars(ProjectRecords &records, const Metric &metric, const NodePath &path,
                              const std::vector<ChartBar> &bars) {
    BarFinder finder(bars);
    std::vector<BarSum> sums(bars.size());
    const RecordQuery query{path,
                            {asDate(bars.front().fromDay), asDate(bars.back().toDay)},
                            {},
                            [&finder](auto date) { return finder.find(date.front()); },
                            {&metric.figure, 1}};
    const auto add = [&](int bar, const auto &record) {
        BarSum &sum = sums[static_cast<std::size_t>(bar)];
        sum.hasRecords = true;
        if (counts(metric, record))
            sum.add(storedNumberOf(record[0]));
    };
    visitRecords(records, query, [&](const auto &batch, auto) { forEachRecord(batch, add); });
    return sums;
}

/// A number too large for 32 bits becomes the largest one.
float toFloat(double number) {
    constexpr double largest = std::numeric_limits<float>::max();
    return std::isnan(number) ? 0 : static_cast<float>(std::clamp(number, -largest, largest));
}

double barValue(const Metric &metric, const BarSum &bar) {
    float value = toFloat(bar.value() / metric.divisor);
    if (metric.averaged)
        value = bar.valued != 0 ? value / static_cast<float>(bar.valued) : 0;
    return roundHalfToEven(value, 2) + 0.0; // no negative zero
}

} // namespace

QStringList chartMetrics() {
    return captionsOf(metrics);
}

ChartSeries queryChartSeries(ProjectRecords &records, const ChartRequest &request) {
    const Metric &metric = metrics.at(static_cast<std::size_t>(request.metric));
    ChartSeries series;
    series.range = request.range;
    if (request.allDates)
        series.range = tableDates(records).value_or(request.range);
    series.periods = choosePeriods(request.grouping, series.range);
    series.metric = QLatin1String(metric.caption);
    series.bars = emptyBars(series.periods, series.range.start);
    const std::vector<BarSum> sums = sumUpBars(records, metric, request.path, series.bars);
    for (std::size_t i = 0; i < sums.size(); ++i) {
        series.bars[i].value = barValue(metric, sums[i]);
        series.bars[i].hasRecords = sums[i].hasRecords;
    }
    const bool isFlat = std::ranges::all_of(
        series.bars, [](double value) { return value == 0; }, &ChartBar::value);
    series.texts = chartTexts(series.periods, series.range, series.bars,
                              isFlat ? surroundings(records, metric, request.path, series)
                                     : ChartSurroundings{});
    return series;
}

void showSeries(const ChartSeries &series, Chart &chart) {
    chart.setRowCount(static_cast<int>(series.bars.size()));
    chart.setSeriesName(series.metric);
    int row = 0;
    for (const ChartBar &bar : series.bars) {
        ++row;
        chart.DataGrid().setRowLabel(row, 1, bar.label);
        chart.DataGrid().SetData(row, 1, bar.value, 0);
        chart.DataGrid().setRowDates(row, datesText(bar));
        chart.DataGrid().setRowHasRecords(row, bar.hasRecords);
    }
    chart.setTexts(series.texts);
    chart.changed();
}

} // namespace veltrona
