#include "core/analysis/nodeStatistics.h"

#include "core/analysis/cellText.h"
#include "core/analysis/nodeRecords.h"
#include "core/analysis/readingOrder.h"
#include "core/analysis/statisticsGrid.h"
#include "core/analysis/summary.h"
#include "core/base/blanks.h"
#include "core/platform/sqlite/recordScan.h"

#include <algorithm>
#include <string>
#include <unordered_map>

namespace veltrona {

namespace {

using sqlite::Connection;
using sqlite::RecordValue;
using sqlite::ValueType;
using Record = std::span<const RecordValue>;

struct Level {
    const char *heading;
    const char *groupingColumn;
};

/// By the digit that the Key begins with.
constexpr std::array<Level, 6> levels = {{
    {"Campaigns", "campaign"},
    {"Adgroups", "Adgroup"},
    {"Search and Content", "AdwordsTyp"},
    {"Keywords", "Keyword"},
    {"Keyword Type", "kwType"},
    {"Keyword Type", "kwType"},
}};

const Level &levelOf(const TreeNode &node) {
    const int digit = node.Key.isEmpty() ? 0 : node.Key.front().digitValue();
    return levels.at(static_cast<std::size_t>(digit));
}

/// What the scan reads of a record; the name is the value of the grouping column.
enum Field { Name, Clicks, Impressions, Ctr, Cpc, Cost, Conv, Pos, ConvValue, Transactions };
constexpr const char *numberColumns =
    ", clicks, impressions, ctr, cpc, cost, conv, pos, convValue, transactions";

/// Number of the field's text.
double numberOf(const RecordValue &value) {
    switch (value.type()) {
    case ValueType::Integer:
        return static_cast<double>(value.int64());
    case ValueType::Real:
        return toFifteenDigits(value.real());
    case ValueType::Text:
        return numberOfText(value.utf8());
    default:
        return 0;
    }
}

double percentNumberOf(const RecordValue &value) {
    return value.type() == ValueType::Text ? percentNumberOfText(value.utf8()) : numberOf(value);
}

/// The field as it stands, not by way of its text.
double plainValueOf(const RecordValue &value) {
    return value.type() == ValueType::Real ? value.real() : numberOf(value);
}

void add(double &sum, double number) {
    sum = toFifteenDigits(number + sum);
}

void addRecord(StatisticsRow &row, Record record) {
    add(row.clicks, numberOf(record[Clicks]));
    add(row.impressions, numberOf(record[Impressions]));
    add(row.ctr, percentNumberOf(record[Ctr]));
    const double cpc = numberOf(record[Cpc]);
    add(row.cpc, cpc);
    row.recordsWithCpc += cpc != 0;
    add(row.cost, numberOf(record[Cost]) / 1'000'000);
    const double conversions = numberOf(record[Conv]);
    if (conversions != 0) {
        add(row.conversions, conversions);
        // The cost stays in millionths here, unlike that of the column "Cost".
        add(row.costPerConversion,
            toFifteenDigits(plainValueOf(record[Cost]) / plainValueOf(record[Conv])));
    }
    // The same numbers once more, as percent.
    add(row.conversionRate, percentNumberOf(record[Conv]));
    const double position = numberOf(record[Pos]);
    add(row.position, position);
    row.recordsWithPosition += position != 0;
    add(row.conversionValue, numberOf(record[ConvValue]));
    add(row.transactions, numberOf(record[Transactions]));
}

/// One row for each name, names compared byte by byte.
class RowsByName {
public:
    StatisticsRow &row(std::string_view name) {
        // Neighbours mostly share their name.
        if (m_last && name == m_last->first)
            return m_last->second;
        auto found = m_rows.find(name);
        if (found == m_rows.end())
            found = m_rows.emplace(name, StatisticsRow()).first;
        m_last = &*found;
        return found->second;
    }

    std::vector<StatisticsRow> inReadingOrder() {
        std::vector<std::pair<ReadingKey, StatisticsRow *>> order;
        order.reserve(m_rows.size());
        for (auto &[name, row] : m_rows) {
            row.name = QString::fromUtf8(name.data(), static_cast<qsizetype>(name.size()));
            order.emplace_back(ReadingKey(row.name), &row);
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
    struct Hash {
        using is_transparent = void;
        std::size_t operator()(std::string_view name) const {
            return std::hash<std::string_view>()(name);
        }
    };
    using Map = std::unordered_map<std::string, StatisticsRow, Hash, std::equal_to<>>;

    Map m_rows;
    Map::value_type *m_last = nullptr;
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

NodeStatistics queryNodeStatistics(const Connection &connection, const TreeNode &node,
                                   const DateRange &range) {
    const Level &level = levelOf(node);
    const NodeRecords records =
        nodeRecords(connection, readNodeTag(node.Tag), isoText(dayNumber(range.start)),
                    isoText(dayNumber(range.end)) + QStringLiteral(" 23:59:59"));
    RowsByName rows;
    sqlite::scanRecords(connection, std::string(level.groupingColumn) + numberColumns, records.sql,
                        records.bindings, [&](Record record) {
                            addRecord(rows.row(withoutBlanks(record[Name].utf8())), record);
                        });
    return {node.Key.mid(2), QLatin1String(level.heading), rows.inReadingOrder()};
}

void showStatistics(const NodeStatistics &statistics, Grid &grid, bool gridColor) {
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
    sumUp(grid, gridColor);
}

} // namespace veltrona
