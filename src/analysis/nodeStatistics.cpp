#include "analysis/nodeStatistics.h"

#include "analysis/cellText.h"
#include "analysis/nodeTag.h"
#include "analysis/readingOrder.h"
#include "analysis/statisticsGrid.h"
#include "analysis/summary.h"
#include "platform/sqlite/recordScan.h"

#include <algorithm>
#include <numeric>
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

std::string_view withoutBlanks(std::string_view name) {
    while (name.starts_with(' '))
        name.remove_prefix(1);
    while (name.ends_with(' '))
        name.remove_suffix(1);
    return name;
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

/// A condition on the records and the texts of its ?s.
struct Condition {
    std::string sql;
    std::vector<QString> bindings;
};

/// A plus sign in front of a column keeps the indexes out that it leads.
Condition dateCondition(const DateRange &range, const char *plus) {
    return {std::string(plus) + "googleDate >= ? AND " + plus + "googleDate <= ?",
            {isoText(dayNumber(range.start)),
             isoText(dayNumber(range.end)) + QStringLiteral(" 23:59:59")}};
}

Condition nodeCondition(const std::vector<NodeCondition> &conditions, const char *plus) {
    Condition all{"1", {}};
    for (const NodeCondition &condition : conditions) {
        all.sql += " AND " + (plus + condition.column.toStdString()) + " = ?";
        all.bindings.push_back(condition.value);
    }
    return all;
}

/// How many records meet the condition; at most `limit`.
qint64 countRecords(const Connection &connection, const Condition &condition, qint64 limit) {
    auto statement = connection.prepare("SELECT count(*) FROM (SELECT 1 FROM tblGoogleDays WHERE " +
                                        condition.sql + " LIMIT ?)");
    int parameter = 0;
    for (const QString &text : condition.bindings)
        statement.bind(++parameter, text);
    statement.bind(++parameter, limit);
    statement.step();
    return statement.int64(0);
}

/// The records of a node in a period, by the cheapest road: through the dates' index, through the
/// names' index, or in one plain scan. A record costs several times as much by way of an index, so
/// that an index pays for a small share of the table only.
Condition recordsOf(const Connection &connection, const TreeNode &node, const DateRange &range) {
    constexpr qint64 smallShare = 8;
    auto newest = connection.prepare("SELECT max(GoogleDayId) FROM tblGoogleDays");
    newest.step();
    const qint64 tooMany = newest.int64(0) / smallShare + 1;

    const std::vector<NodeCondition> conditions = readNodeTag(node.Tag).conditions;
    std::vector<NodeCondition> indexed; // the names' index has no adWordsTyp
    std::copy_if(conditions.begin(), conditions.end(), std::back_inserter(indexed),
                 [](const NodeCondition &each) { return each.column != u"adWordsTyp"; });
    const qint64 named =
        indexed.empty() ? tooMany : countRecords(connection, nodeCondition(indexed, ""), tooMany);
    const qint64 dated = countRecords(connection, dateCondition(range, ""), named);

    const bool byDate = dated < named;
    const bool byName = !byDate && named < tooMany;
    Condition records = dateCondition(range, byDate ? "" : "+");
    const Condition ofNode = nodeCondition(conditions, byName ? "" : "+");
    records.sql = "FROM tblGoogleDays WHERE " + records.sql + " AND " + ofNode.sql;
    records.bindings.insert(records.bindings.end(), ofNode.bindings.begin(), ofNode.bindings.end());
    return records;
}

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
    const Condition records = recordsOf(connection, node, range);
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
    grid.setTextMatrix(0, gridColumn::Name, statistics.heading);
    for (const StatisticsRow &row : statistics.rows) {
        grid.AddItem(QString(), grid.Rows() - 2);
        writeRow(grid, grid.Rows() - 3, row);
    }
    sumUp(grid, gridColor);
}

} // namespace veltrona
