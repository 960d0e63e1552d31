// The data behind a grid control: a table of texts with a heading row, a colour for each cell and a
// current cell. The statistics live in its cells and nowhere else. A view is told of changes
// through `onChange`; with `Redraw` off it hears nothing until `Redraw` is on again.
#pragma once

#include <QString>

#include <deque>
#include <functional>
#include <vector>

namespace veltrona {

/// A colour as red, green and blue from 0 to 255.
struct Rgb {
    int red = 0;
    int green = 0;
    int blue = 0;
    friend bool operator==(const Rgb &, const Rgb &) = default;
};

class Grid {
public:
    /// `columns` never changes afterwards.
    explicit Grid(int columns, int rows = 3);

    int Cols() const { return static_cast<int>(m_columns); }
    int Rows() const { return static_cast<int>(m_rows.size()); }
    void setRows(int rows);

    const QString &TextMatrix(int row, int col) const;
    void setTextMatrix(int row, int col, const QString &text);

    /// Inserts a row in front of row `index`, with `item` in its first column.
    void AddItem(const QString &item, int index);
    void RemoveItem(int index);
    /// Empties all texts and takes away all cell colours; the number of rows stays.
    void Clear();

    /// Column widths in twips; 0 hides a column, -1 is a width that nobody has set yet.
    int ColWidth(int col) const;
    void setColWidth(int col, int twips);
    /// 0 is left and top, -1 the default: numbers to the right, other texts to the left.
    int ColAlignment(int col) const;
    void setColAlignment(int col, int alignment);

    /// The text colour of all cells that have no colour of their own.
    Rgb ForeColor() const { return m_foreColor; }
    void setForeColor(Rgb color);

    /// The current cell, at which `CellForeColor` looks. Moving it never scrolls a view.
    int Row() const { return m_row; }
    int Col() const { return m_col; }
    void setRow(int row) { m_row = row; }
    void setCol(int col) { m_col = col; }

    /// The colour in force at the current cell.
    Rgb CellForeColor() const { return cellColor(m_row, m_col); }
    void setCellForeColor(Rgb color);

    /// The colour in force at any cell, without moving the current one.
    Rgb cellColor(int row, int col) const;

    /// A row's mark, kept beside its colours: it goes with the row, with Clear, and when a cell of
    /// the row gets another colour.
    bool isLoss(int row) const { return m_rows.at(static_cast<std::size_t>(row)).isLoss; }
    void setLoss(int row, bool isLoss);

    bool Redraw() const { return m_redraw; }
    void setRedraw(bool redraw);

    /// Called after a change while `Redraw` is on, and once when it is switched on after changes.
    std::function<void()> onChange;
    /// Set by the window: the user chose a row by double click or Enter.
    std::function<void(int row)> onRowChosen;
    /// Set by the window: the lines that explain the figure in a cell; asked for when they are
    /// about to be shown.
    std::function<QStringList(int row, int col)> notesOf;

private:
    struct Cell {
        QString text;
        int color = -1; // 0xRRGGBB, or -1 for the grid's own
    };
    struct RowData {
        std::vector<Cell> cells;
        bool isLoss = false;
    };

    RowData emptyRow() const { return {std::vector<Cell>(m_columns)}; }
    Cell &cell(int row, int col);
    const Cell &cell(int row, int col) const;
    void changed();

    std::size_t m_columns;
    std::deque<RowData> m_rows; // rows go at the top and come above the bottom: cheap in a deque
    std::vector<int> m_widths;
    std::vector<int> m_alignments;
    Rgb m_foreColor;
    int m_row = 0;
    int m_col = 0;
    bool m_redraw = true;
    bool m_pending = false;
};

/// Keeps `Redraw` off while it lives, and puts back what it found, also when an exception passes.
class RedrawPause {
public:
    explicit RedrawPause(Grid &grid) : m_grid(grid), m_before(grid.Redraw()) {
        grid.setRedraw(false);
    }
    ~RedrawPause() { m_grid.setRedraw(m_before); }
    RedrawPause(const RedrawPause &) = delete;
    RedrawPause &operator=(const RedrawPause &) = delete;

private:
    Grid &m_grid;
    bool m_before;
};

} // namespace veltrona
