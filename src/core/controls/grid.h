// Data of a grid control: a table of texts with a heading row, data rows named by their first
// column, and a summary row; a colour for each cell, a mark for each row and a current cell.
// `onChange` notifies the view; while `Redraw` is off, it is put off until `Redraw` is on again.
#pragma once

#include <QString>
#include <QStringList>
#include <QStringView>

#include <deque>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace veltrona {

/// A colour as red, green and blue from 0 to 255.
struct Rgb {
    quint8 red = 0;
    quint8 green = 0;
    quint8 blue = 0;
    friend bool operator==(const Rgb &, const Rgb &) = default;
};

/// The kinds of rows: the headings, the data rows, an empty spacer, the summary.
namespace gridRow {
inline constexpr int Heading = 0;
inline constexpr int FirstData = 1;
inline constexpr int BelowData = 2;
inline constexpr int Fixed = FirstData + BelowData;
constexpr int dataRows(int rows) {
    return rows - Fixed;
}
constexpr int spacer(int rows) {
    return rows - BelowData;
}
constexpr int summary(int rows) {
    return rows - 1;
}
} // namespace gridRow

class Grid {
public:
    static constexpr int NameColumn = 0;

    /// Only the first `shownColumns` are for a view. The columns never change afterwards.
    Grid(int columns, int shownColumns, int rows = gridRow::Fixed)
        : m_columns(static_cast<std::size_t>(columns)), m_shownColumns(shownColumns),
          m_rows(static_cast<std::size_t>(rows), emptyRow()), m_widths(m_columns, -1),
          m_alignments(m_columns, -1) {}
    explicit Grid(int columns) : Grid(columns, columns) {}

    int Cols() const { return static_cast<int>(m_columns); }
    int shownColumns() const { return m_shownColumns; }
    int Rows() const { return static_cast<int>(m_rows.size()); }
    void setRows(int rows) {
        m_rows.resize(static_cast<std::size_t>(rows), emptyRow());
        changed();
    }

    QString TextMatrix(int row, int col) const { return text(row, col).toString(); }
    void setTextMatrix(int row, int col, const QString &text) {
        at(row).setText(static_cast<std::size_t>(col), text);
        changed();
    }
    /// The same without a copy; valid until the next change.
    QStringView text(int row, int col) const { return at(row).text(static_cast<std::size_t>(col)); }

    /// Inserts a row before row `index`, with `item` in its first column.
    void AddItem(const QString &item, int index) {
        m_rows.insert(m_rows.begin() + index, emptyRow())->setText(NameColumn, item);
        changed();
    }
    void RemoveItem(int index) {
        m_rows.erase(m_rows.begin() + index);
        changed();
    }
    /// Clears texts, cell colours and marks; the number of rows stays.
    void Clear() {
        m_rows.assign(m_rows.size(), emptyRow());
        changed();
    }

    /// Column widths in twips; 0 hides a column, -1 is a width not set yet.
    int ColWidth(int col) const { return m_widths.at(static_cast<std::size_t>(col)); }
    void setColWidth(int col, int twips) {
        m_widths.at(static_cast<std::size_t>(col)) = twips;
        changed();
    }
    /// 0 is left and top, -1 the default: numbers to the right, other texts to the left.
    int ColAlignment(int col) const { return m_alignments.at(static_cast<std::size_t>(col)); }
    void setColAlignment(int col, int alignment) {
        m_alignments.at(static_cast<std::size_t>(col)) = alignment;
        changed();
    }

    /// The text colour of all cells that have no colour of their own.
    Rgb ForeColor() const { return m_foreColor; }
    void setForeColor(Rgb color) {
        m_foreColor = color;
        changed();
    }

    /// The current cell, whose colour is `CellForeColor`. Moving it never scrolls a view.
    int Row() const { return m_row; }
    int Col() const { return m_col; }
    void setRow(int row) { m_row = row; }
    void setCol(int col) { m_col = col; }

    /// The colour in force at the current cell.
    Rgb CellForeColor() const { return cellColor(m_row, m_col); }
    void setCellForeColor(Rgb color) {
        at(m_row).cells.at(static_cast<std::size_t>(m_col)).color = color;
        setLoss(m_row, false);
    }

    /// The colour in force at any cell, without moving the current one.
    Rgb cellColor(int row, int col) const {
        return at(row).cells.at(static_cast<std::size_t>(col)).color.value_or(m_foreColor);
    }

    /// Whether the row didn't earn back its cost. The mark lives as long as the row's colour: Clear
    /// and a new colour reset it.
    bool isLoss(int row) const { return at(row).isLoss; }
    void setLoss(int row, bool isLoss) {
        at(row).isLoss = isLoss;
        changed();
    }

    bool Redraw() const { return m_redraw; }
    void setRedraw(bool redraw) {
        m_redraw = redraw;
        if (m_redraw && m_pending)
            changed();
    }

    /// Why there are no data rows; empty while there are some.
    const QString &notice() const { return m_notice; }
    void setNotice(const QString &notice) {
        m_notice = notice;
        changed();
    }

    /// What the rows are about; a view that has a marked cell gives it up when this changes.
    const QString &subject() const { return m_subject; }
    void setSubject(const QString &subject) {
        m_subject = subject;
        changed();
    }

    /// Called after a change while `Redraw` is on, and once when it is switched on after changes.
    std::function<void()> onChange;
    /// Set by the window: the user chose a row by double click or Enter.
    std::function<void(int row)> onRowChosen;
    /// Set by the window: the lines that explain the figure in a cell; called when they are about
    /// to be shown.
    std::function<QStringList(int row, int col)> notesOf;
    /// Set by the window: the text that explains a column.
    std::function<QString(int col)> columnNoteOf;
    /// Set by the window: whether a column's heading invites to read its explanation.
    std::function<bool(int col)> invitesToRead;

private:
    struct Cell {
        quint32 textEnd = 0;
        std::optional<Rgb> color; // else the grid's own
    };
    /// The texts of all cells are joined: a QString for each would take four times the memory.
    struct RowData {
        std::vector<Cell> cells;
        std::u16string texts;
        bool isLoss = false;

        std::size_t textBegin(std::size_t col) const {
            return col == 0 ? 0 : cells.at(col - 1).textEnd;
        }
        QStringView text(std::size_t col) const {
            const std::size_t begin = textBegin(col);
            return {texts.data() + begin, static_cast<qsizetype>(cells.at(col).textEnd - begin)};
        }
        void setText(std::size_t col, QStringView text) {
            const std::size_t begin = textBegin(col);
            const auto size = static_cast<quint32>(text.size());
            const auto before = static_cast<quint32>(cells.at(col).textEnd - begin);
            texts.replace(begin, before, text.utf16(), size);
            for (; col < cells.size(); ++col)
                cells[col].textEnd += size - before; // modulo 2^32
        }
    };

    RowData emptyRow() const { return {std::vector<Cell>(m_columns), {}, false}; }
    RowData &at(int row) { return m_rows.at(static_cast<std::size_t>(row)); }
    const RowData &at(int row) const { return m_rows.at(static_cast<std::size_t>(row)); }
    void changed() {
        m_pending = !m_redraw;
        if (m_redraw && onChange)
            onChange();
    }

    std::size_t m_columns;
    int m_shownColumns;
    std::deque<RowData> m_rows; // removed at the top, inserted near the bottom
    std::vector<int> m_widths;
    std::vector<int> m_alignments;
    Rgb m_foreColor;
    QString m_notice;
    QString m_subject;
    int m_row = 0;
    int m_col = 0;
    bool m_redraw = true;
    bool m_pending = false;
};

/// RAII guard that switches `Redraw` off and restores its previous value.
class RedrawPause {
public:
    explicit RedrawPause(Grid &grid) : m_grid(grid), m_before(grid.Redraw()) {
        grid.setRedraw(false);
    }
    ~RedrawPause() { m_grid.setRedraw(m_before); }
    Q_DISABLE_COPY_MOVE(RedrawPause)

private:
    Grid &m_grid;
    bool m_before;
};

} // namespace veltrona
