#include "core/analysis/grid/nodeStatistics.h"

#include "core/analysis/grid/statisticsGrid.h"
#include "core/analysis/records/cellText.h"
#include "core/analysis/records/readingOrder.h"
#include "core/analysis/records/recordWalk.h"
#include "core/analysis/tree/navigationTexts.h"
#include "core/base/storedText.h"
#include "core/base/text.h"

#include <algorithm>
#include <array>
#include <span>
#include <string_view>
#include <utility>

namespace veltrona {

namespace {

/// Of the grid's first column, by the NameColumn that it shows.
constexpr std::array<const char *, nameColumns.size()> headings = {
    "Campaigns", "Adgroups", "Search and Content", "Keywords", "Keyword Type"};

constexpr FigureList figures([](const GridColumn &) { return true; });

template<class Record>
void addRecord(StatisticsRow &row, const Record &record) {
    gridColumn::forEach([&](auto col) {
        constexpr const GridColumn &column = gridColumn::at(col);
        double &sum = row.sums[col];
        if constexpr (column.rule == CellRule::Sum || column.rule == CellRule::Mean) {
            const auto &figure = record[figures.placeOf(*column.figure)];
            const double number = column.isPercent ? percentNumberOf(figure) : numberOf(figure);
            if constexpr (column.rule == CellRule::Mean) {
                row.sums[column.countColumn] += number != 0;
                addAsCell(sum, number);
            } else {
                addAsCell(sum, number / column.divisor);
            }
        } else if constexpr (column.rule == CellRule::Quotient) {
            const auto &divisor = record[figures.placeOf(*column.perFigure)];
            if (numberOf(divisor) != 0)
                addAsCell(sum,
                          toFifteenDigits(plainValueOf(record[figures.placeOf(*column.figure)]) /
                                          plainValueOf(divisor)));
        }
    });
}

/// `wholes` adds up scaled figures without rounding to 15 digits after each: as long as none is
/// negative, the error of a sum stays below half a unit of its 15th digit.
struct RowOfRecords : StatisticsRow {
    std::array<double, figures.count> wholes{};
    bool hasRecords = false;

    void add(const WholeRecord &record) {
        for (std::size_t i = 0; i < wholes.size(); ++i)
            wholes[i] += record[i];
        gridColumn::forEach([&](auto col) {
            constexpr const GridColumn &column = gridColumn::at(col);
            if constexpr (column.rule == CellRule::Mean) {
                sums[column.countColumn] += record[figures.placeOf(*column.figure)] != 0;
            } else if constexpr (column.rule == CellRule::Quotient) {
                // The quotients aren't whole: rounded after each.
                constexpr std::size_t divisor = figures.placeOf(*column.perFigure);
                if (record[divisor] != 0)
                    addAsCell(sums[col],
                              toFifteenDigits(record.number(figures.placeOf(*column.figure)) /
                                              record.number(divisor)));
            }
        });
    }

    void setSumsFromWholes(std::span<const double> scales) {
        gridColumn::forEach([&](auto col) {
            constexpr const GridColumn &column = gridColumn::at(col);
            if constexpr (column.rule == CellRule::Sum || column.rule == CellRule::Mean) {
                constexpr std::size_t figure = figures.placeOf(*column.figure);
                constexpr double divisor = column.rule == CellRule::Sum ? column.divisor : 1;
                sums[col] = wholes[figure] / (scales[figure] * divisor);
            }
        });
    }
};

/// One row for each name, names compared byte by byte.
class RowsByName {
public:
    int place(std::string_view name) {
        // Neighbouring records mostly share their name.
        if (m_last == TextDictionary::none || m_names.text(m_last) != name) {
            m_last = m_names.add(name);
            m_rows.resize(m_names.size());
        }
        return static_cast<int>(m_last);
    }

    void add(const RecordBatch &batch, std::span<const double> scales) {
        if (scales.empty()) {
            forEachRecord(batch, [this](int place, const auto &record) {
                addRecord(rowToAddTo(place), record);
            });
            return;
        }
        for (std::size_t i = 0; i < batch.size(); ++i)
            rowToAddTo(batch.group(i)).add(WholeRecord(batch, i, scales));
    }

    void setSumsFromWholes(std::span<const double> scales) {
        for (RowOfRecords &row : m_rows)
            row.setSumsFromWholes(scales);
    }

    /// The rows that have records.
    std::vector<StatisticsRow> inReadingOrder() {
        std::vector<std::pair<ReadingKey, StatisticsRow *>> order;
        for (TextDictionary::Code name = 0; name < m_names.size(); ++name) {
            RowOfRecords &row = m_rows[name];
            if (!row.hasRecords)
                continue;
            row.name = textOf(m_names.text(name));
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
    RowOfRecords &rowToAddTo(int place) {
        RowOfRecords &row = m_rows[static_cast<std::size_t>(place)];
        row.hasRecords = true;
        return row;
    }

    TextDictionary m_names;
    TextDictionary::Code m_last = TextDictionary::none;
    std::vector<RowOfRecords> m_rows; // by the names' codes
};

void writeRow(Grid &grid, int row, const StatisticsRow &statistics) {
    const ColumnSums &sums = statistics.sums;
    for (const GridColumn &column : gridColumn::table) {
        const int col = column.column;
        QString text;
        if (column.rule == CellRule::Name)
            text = statistics.name;
        else if (column.rule == CellRule::Return)
            text = returnOnInvestment(sums[gridColumn::ConversionValue], sums[gridColumn::Cost]);
        else if (column.rule != CellRule::Count || sums[col] != 0)
            text = figureText(col, sums[col]);
        grid.setTextMatrix(row, col, text);
    }
}

} // namespace

NodeStatistics queryNodeStatistics(ProjectRecords &records, const NodePath &path,
                                   const DateRange &range) {
    const NameColumn column = path.columnBelow();
    RowsByName rows;
    const RecordQuery query{path,
                            range,
                            {column},
                            [&rows](std::span<const std::string_view> name) {
                                return rows.place(withoutBlanks(name.front()));
                            },
                            figures,
                            true};
    std::vector<double> usedScales;
    visitRecords(records, query, [&](const RecordBatch &batch, std::span<const double> scales) {
        rows.add(batch, scales);
        usedScales.assign(scales.begin(), scales.end());
    });
    if (!usedScales.empty())
        rows.setSumsFromWholes(usedScales);
    return {captionOf(path), QLatin1String(headings[static_cast<std::size_t>(column)]),
            rows.inReadingOrder()};
}

void fillGrid(const NodeStatistics &statistics, Grid &grid, bool gridColor) {
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
