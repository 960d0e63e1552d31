#include "core/analysis/grid/nodeStatistics.h"

#include "core/analysis/grid/statisticsGrid.h"
#include "core/analysis/grid/summary.h"
#include "core/analysis/records/cellText.h"
#include "core/analysis/records/readingOrder.h"
#include "core/analysis/records/recordWalk.h"
#include "core/base/blanks.h"
#include "core/base/storedText.h"

#include <algorithm>
#include <array>
#include <string>
#include <unordered_map>

namespace veltrona {

namespace {

struct Level {
    const char *heading;
    NameColumn groupingColumn;
};

/// By the digit that the Key begins with.
constexpr std::array<Level, 6> levels = {{
    {"Campaigns", NameColumn::Campaign},
    {"Adgroups", NameColumn::Adgroup},
    {"Search and Content", NameColumn::AdwordsTyp},
    {"Keywords", NameColumn::KeyWord},
    {"Keyword Type", NameColumn::KwType},
    {"Keyword Type", NameColumn::KwType},
}};

const Level &levelOf(const TreeNode &node) {
    const QString key = node.Key();
    const int digit = key.isEmpty() ? 0 : key.front().digitValue();
    return levels.at(static_cast<std::size_t>(digit));
}

/// What the walk reads of a record.
enum Field { Clicks, Impressions, Ctr, Cpc, Cost, Conv, Pos, ConvValue, Transactions };
constexpr std::array figures = {Figure::Clicks, Figure::Impressions, Figure::Ctr,
                                Figure::Cpc,    Figure::Cost,        Figure::Conv,
                                Figure::Pos,    Figure::ConvValue,   Figure::Transactions};

template<class Record>
void addRecord(StatisticsRow &row, const Record &record) {
    addAsCell(row.clicks, numberOf(record[Clicks]));
    addAsCell(row.impressions, numberOf(record[Impressions]));
    addAsCell(row.ctr, percentNumberOf(record[Ctr]));
    const double cpc = numberOf(record[Cpc]);
    addAsCell(row.cpc, cpc);
    row.recordsWithCpc += cpc != 0;
    addAsCell(row.cost, numberOf(record[Cost]) / 1'000'000);
    const double conversions = numberOf(record[Conv]);
    if (conversions != 0) {
        addAsCell(row.conversions, conversions);
        // The cost stays in millionths here, unlike that of the column "Cost".
        addAsCell(row.costPerConversion,
                  toFifteenDigits(plainValueOf(record[Cost]) / plainValueOf(record[Conv])));
    }
    // The same numbers once more, as percent.
    addAsCell(row.conversionRate, percentNumberOf(record[Conv]));
    const double position = numberOf(record[Pos]);
    addAsCell(row.position, position);
    row.recordsWithPosition += position != 0;
    addAsCell(row.conversionValue, numberOf(record[ConvValue]));
    addAsCell(row.transactions, numberOf(record[Transactions]));
}

/// The sums of whole records. Rounding to 15 digits after each would change none of them: as long
/// as nothing is below zero, the errors of a sum stay below half a unit of its 15th digit.
struct WholeSums {
    std::array<double, figures.size()> wholes{};
    int recordsWithCpc = 0;
    int recordsWithPosition = 0;
    double costPerConversion = 0; // of quotients: rounded after each

    void add(const WholeRecord &record) {
        for (std::size_t i = 0; i < wholes.size(); ++i)
            wholes[i] += record[i];
        recordsWithCpc += record[Cpc] != 0;
        recordsWithPosition += record[Pos] != 0;
        if (record[Conv] != 0)
            addAsCell(costPerConversion,
                      toFifteenDigits(record.number(Cost) / record.number(Conv)));
    }

    void takeTo(StatisticsRow &row, std::span<const double> scales) const {
        const auto sum = [&](Field field) { return wholes[field] / scales[field]; };
        row.clicks = sum(Clicks);
        row.impressions = sum(Impressions);
        row.ctr = sum(Ctr);
        row.cpc = sum(Cpc);
        row.cost = wholes[Cost] / (scales[Cost] * 1'000'000);
        row.conversions = row.conversionRate = sum(Conv);
        row.costPerConversion = costPerConversion;
        row.position = sum(Pos);
        row.conversionValue = sum(ConvValue);
        row.transactions = sum(Transactions);
        row.recordsWithPosition = recordsWithPosition;
        row.recordsWithCpc = recordsWithCpc;
    }
};

/// One row for each name, names compared byte by byte.
class RowsByName {
public:
    int place(std::string_view name) {
        // Neighbours mostly share their name.
        if (m_last && name == m_last->first)
            return m_last->second;
        auto found = m_places.find(name);
        if (found == m_places.end()) {
            found = m_places.emplace(name, static_cast<int>(m_rows.size())).first;
            m_rows.emplace_back();
        }
        m_last = &*found;
        return found->second;
    }
    StatisticsRow &rowToAddTo(int place) { return rowWithRecords(place).sums; }
    WholeSums &wholesToAddTo(int place) { return rowWithRecords(place).wholes; }
    void takeWholes(std::span<const double> scales) {
        for (Row &row : m_rows)
            row.wholes.takeTo(row.sums, scales);
    }

    /// The rows that have records.
    std::vector<StatisticsRow> inReadingOrder() {
        std::vector<std::pair<ReadingKey, StatisticsRow *>> order;
        for (const auto &[name, place] : m_places) {
            Row &row = m_rows[static_cast<std::size_t>(place)];
            if (!row.hasRecords)
                continue;
            row.sums.name = textOf(name);
            order.emplace_back(ReadingKey(row.sums.name), &row.sums);
        }
        std::sort(order.begin(), order.end(),
                  [](const auto &a, const auto &b) { return a.first < b.first; });
        std::vector<StatisticsRow> rows;
        rows.reserve(order.size());
        for (const auto &[key, row] : order)
            rows.push_back(std::move(*row));
        return rows;
    }

private:
    struct Row {
        StatisticsRow sums;
        WholeSums wholes;
        bool hasRecords = false;
    };
    Row &rowWithRecords(int place) {
        Row &row = m_rows[static_cast<std::size_t>(place)];
        row.hasRecords = true;
        return row;
    }
    struct Hash {
        using is_transparent = void;
        std::size_t operator()(std::string_view name) const {
            return std::hash<std::string_view>()(name);
        }
    };
    using Map = std::unordered_map<std::string, int, Hash, std::equal_to<>>;

    Map m_places;
    Map::value_type *m_last = nullptr;
    std::vector<Row> m_rows;
};

/// Empty for none.
QString countText(int count) {
    return count == 0 ? QString() : QString::number(count);
}

void writeRow(Grid &grid, int row, const StatisticsRow &sums) {
    const auto percent = [](double number) { return numberText(number) + u'%'; };
    const QString texts[gridColumn::Count] = {
        sums.name,
        numberText(sums.clicks),
        numberText(sums.impressions),
        percent(sums.ctr),
        numberText(sums.cpc),
        numberText(sums.cost),
        numberText(sums.conversions),
        percent(sums.conversionRate),
        numberText(sums.costPerConversion),
        numberText(sums.position),
        numberText(sums.conversionValue),
        returnOnInvestment(sums.conversionValue, sums.cost),
        numberText(sums.transactions),
        countText(sums.recordsWithPosition),
        countText(sums.recordsWithCpc),
    };
    for (int col = 0; col < gridColumn::Count; ++col)
        grid.setTextMatrix(row, col, texts[col]);
}

} // namespace

NameColumn groupingColumn(const TreeNode &node) {
    return levelOf(node).groupingColumn;
}

NodeStatistics queryNodeStatistics(ProjectRecords &records, const TreeNode &node,
                                   const DateRange &range) {
    const Level &level = levelOf(node);
    RowsByName rows;
    const RecordQuestion question{
        readNodeTag(node.Tag()),
        isoText(dayNumber(range.start)),
        isoText(dayNumber(range.end)) + QStringLiteral(" 23:59:59"),
        level.groupingColumn,
        [&rows](std::string_view name) { return rows.place(withoutBlanks(name)); },
        figures};
    const std::vector<double> scales = walkRecords(
        records, question,
        [&rows](int place, const auto &record) { addRecord(rows.rowToAddTo(place), record); },
        [&rows](int place, const WholeRecord &record) { rows.wholesToAddTo(place).add(record); });
    if (!scales.empty())
        rows.takeWholes(scales);
    return {node.Key().mid(2), QLatin1String(level.heading), rows.inReadingOrder()};
}

void pourStatistics(const NodeStatistics &statistics, Grid &grid, bool gridColor) {
    const RedrawPause pause(grid);
    if (statistics.rows.empty()) {
        grid.Clear();
        initGrid(grid, gridColor);
        resetSummary(grid);
        return;
    }
    removeDataRows(grid);
    grid.setTextMatrix(gridRow::Heading, gridColumn::Name, statistics.heading);
    for (const StatisticsRow &row : statistics.rows) {
        grid.AddItem(QString(), gridRow::spacer(grid.Rows()));
        writeRow(grid, gridRow::dataRows(grid.Rows()), row);
    }
}

} // namespace veltrona
