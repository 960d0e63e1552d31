// Data of a bar chart: one column of values, a label for each row.
#pragma once

#include <QString>

#include <functional>
#include <vector>

namespace veltrona {

struct ChartRow {
    QString label;
    double value = 0;
    bool isNull = true;
    QString dates;          // that the bar counts, for the tooltip
    bool hasRecords = true; // else there is no value
};

/// Texts about the chart, for the screen and screen readers; never in the picture.
struct ChartTexts {
    QString notice;      // why there are no bars, or empty
    QString note;        // what a bar counts
    QString description; // full description for screen readers
};

/// Rows count from 1; the only column is 1.
class ChartDataGrid {
public:
    const QString &RowLabel(int row, int) const { return at(row).label; }
    void setRowLabel(int row, int, const QString &label) { at(row).label = label; }
    void SetData(int row, int, double value, int nullFlag) {
        at(row).value = value;
        at(row).isNull = nullFlag != 0;
    }
    void setRowDates(int row, const QString &dates) { at(row).dates = dates; }
    void setRowHasRecords(int row, bool has) { at(row).hasRecords = has; }
    const std::vector<ChartRow> &rows() const { return m_rows; }

private:
    friend class Chart;
    ChartRow &at(int row) { return m_rows.at(static_cast<std::size_t>(row - 1)); }
    const ChartRow &at(int row) const { return m_rows.at(static_cast<std::size_t>(row - 1)); }
    std::vector<ChartRow> m_rows;
};

class Chart {
public:
    int RowCount() const { return static_cast<int>(m_grid.m_rows.size()); }
    /// Existing rows keep their content.
    void setRowCount(int rows) { m_grid.m_rows.resize(static_cast<std::size_t>(rows)); }
    ChartDataGrid &DataGrid() { return m_grid; }
    const ChartDataGrid &DataGrid() const { return m_grid; }

    /// For the title, the tooltip and screen readers.
    const QString &SeriesName() const { return m_seriesName; }
    void setSeriesName(const QString &name) { m_seriesName = name; }

    const ChartTexts &texts() const { return m_texts; }
    void setTexts(const ChartTexts &texts) { m_texts = texts; }

    /// Notifies the view; to be called when all rows are set.
    void changed() {
        if (onChange)
            onChange();
    }
    std::function<void()> onChange;
    /// Set by the window: the user chose a bar, counted from 0, by double click or Enter.
    std::function<void(int bar)> onBarChosen;
    /// Set by the window: the user goes back to the days before the last chosen bar; false if there
    /// are none.
    std::function<bool()> onDaysBack;

private:
    ChartDataGrid m_grid;
    QString m_seriesName;
    ChartTexts m_texts;
};

} // namespace veltrona
