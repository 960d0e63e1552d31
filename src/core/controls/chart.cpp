#include "core/controls/chart.h"

namespace veltrona {

const QString &ChartDataGrid::RowLabel(int row, int) const {
    return at(row).label;
}

void ChartDataGrid::setRowLabel(int row, int, const QString &label) {
    at(row).label = label;
}

void ChartDataGrid::SetData(int row, int, double value, int nullFlag) {
    at(row).value = value;
    at(row).isNull = nullFlag != 0;
}

void ChartDataGrid::setRowDates(int row, const QString &dates) {
    at(row).dates = dates;
}

void Chart::setRowCount(int rows) {
    m_grid.m_rows.resize(static_cast<std::size_t>(rows));
}

void Chart::changed() {
    if (onChange)
        onChange();
}

} // namespace veltrona
