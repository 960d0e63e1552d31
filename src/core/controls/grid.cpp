#include "core/controls/grid.h"

#include <algorithm>

namespace veltrona {

Grid::Grid(int columns, int shownColumns, int rows)
    : m_columns(static_cast<std::size_t>(columns)), m_shownColumns(shownColumns),
      m_rows(static_cast<std::size_t>(rows), emptyRow()), m_widths(m_columns, -1),
      m_alignments(m_columns, -1) {}

Grid::Cell &Grid::cell(int row, int col) {
    return m_rows.at(static_cast<std::size_t>(row)).cells.at(static_cast<std::size_t>(col));
}

const Grid::Cell &Grid::cell(int row, int col) const {
    return m_rows.at(static_cast<std::size_t>(row)).cells.at(static_cast<std::size_t>(col));
}

void Grid::setRows(int rows) {
    m_rows.resize(static_cast<std::size_t>(rows), emptyRow());
    changed();
}

const QString &Grid::TextMatrix(int row, int col) const {
    return cell(row, col).text;
}

void Grid::setTextMatrix(int row, int col, const QString &text) {
    cell(row, col).text = text;
    changed();
}

void Grid::AddItem(const QString &item, int index) {
    RowData row = emptyRow();
    row.cells.front().text = item;
    m_rows.insert(m_rows.begin() + index, std::move(row));
    changed();
}

void Grid::RemoveItem(int index) {
    m_rows.erase(m_rows.begin() + index);
    changed();
}

void Grid::Clear() {
    std::fill(m_rows.begin(), m_rows.end(), emptyRow());
    changed();
}

int Grid::ColWidth(int col) const {
    return m_widths.at(static_cast<std::size_t>(col));
}

void Grid::setColWidth(int col, int twips) {
    m_widths.at(static_cast<std::size_t>(col)) = twips;
    changed();
}

int Grid::ColAlignment(int col) const {
    return m_alignments.at(static_cast<std::size_t>(col));
}

void Grid::setColAlignment(int col, int alignment) {
    m_alignments.at(static_cast<std::size_t>(col)) = alignment;
    changed();
}

void Grid::setForeColor(Rgb color) {
    m_foreColor = color;
    changed();
}

void Grid::setCellForeColor(Rgb color) {
    cell(m_row, m_col).color = (color.red << 16) | (color.green << 8) | color.blue;
    setLoss(m_row, false);
}

void Grid::setLoss(int row, bool isLoss) {
    m_rows.at(static_cast<std::size_t>(row)).isLoss = isLoss;
    changed();
}

Rgb Grid::cellColor(int row, int col) const {
    const int color = cell(row, col).color;
    if (color < 0)
        return m_foreColor;
    return {(color >> 16) & 0xFF, (color >> 8) & 0xFF, color & 0xFF};
}

void Grid::setRedraw(bool redraw) {
    m_redraw = redraw;
    if (m_redraw && m_pending)
        changed();
}

void Grid::changed() {
    m_pending = !m_redraw;
    if (m_redraw && onChange)
        onChange();
}

} // namespace veltrona
