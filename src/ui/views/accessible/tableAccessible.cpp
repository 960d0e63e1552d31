#include "ui/views/accessible/tableAccessible.h"

namespace veltrona {

namespace {

/// Invalid while the table has fewer rows.
class Cell : public QAccessibleInterface, public QAccessibleTableCellInterface {
public:
    Cell(TableAccessible &owner, int row, int column)
        : m_table(owner), m_row(row), m_column(column) {}

    bool isValid() const override {
        return m_table.isValid() && m_row < m_table.rowCount() && m_column < m_table.columnCount();
    }
    QObject *object() const override { return nullptr; }
    QAccessibleInterface *childAt(int, int) const override { return nullptr; }
    QAccessibleInterface *parent() const override { return &m_table; }
    QAccessibleInterface *child(int) const override { return nullptr; }
    int childCount() const override { return 0; }
    int indexOfChild(const QAccessibleInterface *) const override { return -1; }
    void setText(QAccessible::Text, const QString &) override {}

    QAccessible::Role role() const override {
        if (m_row < 0)
            return QAccessible::ColumnHeader;
        return m_column < 0 ? QAccessible::RowHeader : QAccessible::Cell;
    }

    QString text(QAccessible::Text kind) const override {
        if (!isValid())
            return {};
        if (kind == QAccessible::Name)
            return m_table.cellText(m_row, m_column);
        return kind == QAccessible::Description ? m_table.cellDescription(m_row, m_column)
                                                : QString();
    }

    QRect rect() const override {
        const QRect place = m_table.cellRect(m_row, m_column);
        return {m_table.toScreen(place.topLeft()), place.size()};
    }

    QAccessible::State state() const override {
        QAccessible::State state;
        state.readOnly = true;
        state.invalid = !isValid();
        if (m_row < 0 || m_column < 0 || state.invalid)
            return state;
        state.focusable = true;
        state.focused = m_table.focusChild() == this;
        state.selectable = true;
        state.selected = isSelected();
        state.offscreen = m_table.isLeftOut(m_row, m_column);
        return state;
    }

    void *interface_cast(QAccessible::InterfaceType type) override {
        return type == QAccessible::TableCellInterface
                   ? static_cast<QAccessibleTableCellInterface *>(this)
                   : nullptr;
    }

    bool isSelected() const override { return m_table.isCellSelected(m_row, m_column); }
    QList<QAccessibleInterface *> columnHeaderCells() const override {
        return headers(-1, m_column);
    }
    QList<QAccessibleInterface *> rowHeaderCells() const override { return headers(m_row, -1); }
    int columnIndex() const override { return m_column; }
    int rowIndex() const override { return m_row; }
    int columnExtent() const override { return 1; }
    int rowExtent() const override { return 1; }
    QAccessibleInterface *table() const override { return parent(); }

private:
    QList<QAccessibleInterface *> headers(int row, int column) const {
        if (!m_table.hasHeaders() || m_row < 0 || m_column < 0)
            return {};
        return {m_table.cellAt(row, column)};
    }

    TableAccessible &m_table;
    int m_row;
    int m_column;
};

} // namespace

TableAccessible::~TableAccessible() {
    for (const auto &[index, id] : m_cells)
        QAccessible::deleteAccessibleInterface(id);
}

void TableAccessible::forgetRow(int row, int oneColumn, int otherColumn) {
    for (int column = -m_headers; column < columnCount(); ++column) {
        const auto cell = column == oneColumn || column == otherColumn
                              ? m_cells.end()
                              : m_cells.find(indexOf(row, column));
        if (cell == m_cells.end())
            continue;
        QAccessible::deleteAccessibleInterface(cell->second);
        m_cells.erase(cell);
    }
}

bool TableAccessible::isCellSelected(int row, int column) const {
    return markedCell() == QPoint(column, row);
}

void *TableAccessible::interface_cast(QAccessible::InterfaceType type) {
    return type == QAccessible::TableInterface ? static_cast<QAccessibleTableInterface *>(this)
                                               : QAccessibleWidget::interface_cast(type);
}

int TableAccessible::childCount() const {
    return (rowCount() + m_headers) * (columnCount() + m_headers);
}

// The order in which Qt's own views count their cells in events.
int TableAccessible::indexOf(int row, int column) const {
    return (row + m_headers) * (columnCount() + m_headers) + column + m_headers;
}

QAccessibleInterface *TableAccessible::child(int index) const {
    const int width = columnCount() + m_headers;
    return index < 0 ? nullptr : cellAt(index / width - m_headers, index % width - m_headers);
}

int TableAccessible::indexOfChild(const QAccessibleInterface *child) const {
    const auto *cell = const_cast<QAccessibleInterface *>(child)->tableCellInterface();
    return cell ? indexOf(cell->rowIndex(), cell->columnIndex()) : -1;
}

QAccessibleInterface *TableAccessible::childAt(int x, int y) const {
    const QPoint cell = cellAtPlace(widget()->mapFromGlobal(QPoint(x, y)));
    return cell.x() < 0 || cell.y() < 0 ? nullptr : cellAt(cell.y(), cell.x());
}

QAccessibleInterface *TableAccessible::focusChild() const {
    const QPoint cell = markedCell();
    return !widget()->hasFocus() || cell.x() < 0 || cell.y() < 0 ? nullptr
                                                                 : cellAt(cell.y(), cell.x());
}

QAccessibleInterface *TableAccessible::cellAt(int row, int column) const {
    if (row < -m_headers || row >= rowCount() || column < -m_headers || column >= columnCount())
        return nullptr;
    const auto [place, isNew] = m_cells.try_emplace(indexOf(row, column), 0);
    if (isNew)
        place->second = QAccessible::registerAccessibleInterface(
            new Cell(const_cast<TableAccessible &>(*this), row, column));
    return QAccessible::accessibleInterface(place->second);
}

} // namespace veltrona
