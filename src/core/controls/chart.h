// The data behind a bar chart: one column of values with a label for each row.
#pragma once

#include <QString>

#include <functional>
#include <vector>

namespace veltrona {

struct ChartRow {
    QString label;
    double value = 0;
    bool isNull = true;
    QString dates;          // what the bar counts, in words, for the tooltip
    bool hasRecords = true; // else the value stands for nothing
};

/// What is said about the chart: on the screen and to a screen reader, never in the picture.
struct ChartWords {
    QString notice;      // why there are no bars; empty where there are
    QString note;        // what a bar counts
    QString description; // all of it in a few sentences, for those who hear it
};

/// Rows count from 1; the one column has the number 1.
class ChartDataGrid {
public:
    const QString &RowLabel(int row, int labelIndex) const;
    void setRowLabel(int row, int labelIndex, const QString &label);
    void SetData(int row, int column, double value, int nullFlag);
    double value(int row) const { return at(row).value; }
    /// The dates that a bar really counts, in words.
    void setRowDates(int row, const QString &dates);
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
    /// Rows that were there keep their content, as a rule until they are overwritten.
    void setRowCount(int rows);
    ChartDataGrid &DataGrid() { return m_grid; }
    const ChartDataGrid &DataGrid() const { return m_grid; }

    /// The name of the series, for a screen reader and the tooltip.
    const QString &SeriesName() const { return m_seriesName; }
    void setSeriesName(const QString &name) { m_seriesName = name; }

    const ChartWords &words() const { return m_words; }
    void setWords(const ChartWords &words) { m_words = words; }

    /// To be called when a set of rows is complete.
    void changed();
    std::function<void()> onChange;

private:
    ChartDataGrid m_grid;
    QString m_seriesName;
    ChartWords m_words;
};

} // namespace veltrona
