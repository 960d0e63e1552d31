#include "ui/views/accessible/screenReader.h"
#include "ui/views/accessible/tableAccessible.h"
#include "ui/views/accessible/viewAccessibles.h"
#include "ui/views/controls/gridModel.h"
#include "ui/views/controls/gridView.h"
#include "ui/views/plainText.h"

#include <QHeaderView>

namespace veltrona {

namespace {

class GridAccessible : public TableAccessible {
public:
    explicit GridAccessible(GridView &view)
        : TableAccessible(view, QAccessible::Table, 1), m_view(view) {}

    QString text(QAccessible::Text kind) const override {
        const QString &notice = m_view.grid().notice();
        return kind == QAccessible::Description && !notice.isEmpty() ? spokenText(notice)
                                                                     : TableAccessible::text(kind);
    }

    int rowCount() const override { return m_view.model()->rowCount(); }
    int columnCount() const override { return m_view.model()->columnCount(); }

    QString cellText(int row, int column) const override {
        const auto &model = static_cast<const GridModel &>(*m_view.model());
        if (row < 0 && column < 0)
            return {};
        if (row < 0)
            return model.headerData(column, Qt::Horizontal).toString();
        const QModelIndex cell = model.index(row, std::max(column, Grid::NameColumn));
        QString text = cell.data().toString();
        if (column > Grid::NameColumn || model.isSpacer(row))
            return text;
        if (text.isEmpty())
            text = QStringLiteral("(no name)");
        return model.isLoss(cell) ? text + QStringLiteral(", loss: did not earn back its cost")
                                  : text;
    }
    /// Of headings, and of the marked cell.
    QString cellDescription(int row, int column) const override {
        const QAbstractItemModel &model = *m_view.model();
        constexpr int role = Qt::AccessibleDescriptionRole;
        if (row < 0)
            return model.headerData(column, Qt::Horizontal, role).toString();
        if (QPoint(column, row) != markedCell())
            return {};
        return spokenText(model.index(row, column).data(role).toString());
    }

    QRect cellRect(int row, int column) const override {
        const QHeaderView &across = *m_view.horizontalHeader();
        const QHeaderView &down = *m_view.verticalHeader();
        const QPoint corner = m_view.viewport()->pos();
        const int x = column < 0 ? 0 : corner.x() + across.sectionViewportPosition(column);
        const int y = row < 0 ? 0 : corner.y() + down.sectionViewportPosition(row);
        return {x, y, column < 0 ? 0 : across.sectionSize(column),
                row < 0 ? across.height() : down.sectionSize(row)};
    }
    QPoint cellAtPlace(const QPoint &place) const override {
        const QModelIndex cell = m_view.indexAt(m_view.viewport()->mapFrom(&m_view, place));
        return {cell.column(), cell.row()};
    }
    QPoint markedCell() const override {
        return {m_view.currentIndex().column(), m_view.currentIndex().row()};
    }
    bool isCellSelected(int row, int column) const override {
        return m_view.selectionModel()->isSelected(m_view.model()->index(row, column));
    }
    // Screen readers read the whole row when moving down: of the current row that should be the
    // name and the current figure.
    bool isLeftOut(int row, int column) const override {
        const QPoint marked = markedCell();
        return row == marked.y() && column != marked.x() && column != Grid::NameColumn;
    }

    int selectedCellCount() const override {
        return static_cast<int>(m_view.selectionModel()->selectedIndexes().size());
    }
    QList<QAccessibleInterface *> selectedCells() const override {
        QList<QAccessibleInterface *> cells;
        for (const QModelIndex &cell : m_view.selectionModel()->selectedIndexes())
            cells.append(cellAt(cell.row(), cell.column()));
        return cells;
    }

private:
    GridView &m_view;
};

} // namespace

void installGridAccessible() {
    installAccessible<GridView, GridAccessible>();
}

void notifyRowEntered(GridView &view) {
    if (auto *grid = dynamic_cast<GridAccessible *>(accessibleOf(&view)))
        grid->forgetRow(view.currentIndex().row(), Grid::NameColumn, view.currentIndex().column());
}

} // namespace veltrona
