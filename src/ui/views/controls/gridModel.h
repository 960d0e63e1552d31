// A grid as an item model, which reads the cells live. The grid's heading row is the horizontal
// header, the other rows are the model's.
#pragma once

#include "core/controls/grid.h"

#include <QAbstractTableModel>
#include <QStringList>
#include <QVariant>

namespace veltrona {

class GridModel : public QAbstractTableModel {
    Q_OBJECT
public:
    explicit GridModel(Grid &grid, QObject *parent = nullptr);

    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
    QVariant headerData(int section, Qt::Orientation orientation,
                        int role = Qt::DisplayRole) const override;

    static constexpr int gridRowOf(int row) { return row + gridRow::FirstData; }

    /// The grid's colour of the cell.
    Rgb cellColor(const QModelIndex &index) const;
    /// Whether the row didn't earn back its cost.
    bool isLoss(const QModelIndex &index) const;
    bool isSummary(int row) const { return row == m_rows - 1; }
    bool isSpacer(int row) const { return row == m_rows - gridRow::BelowData; }
    /// All that explains a cell, with the note of its column.
    QString explanation(const QModelIndex &index) const;

    /// Updates the views after a change of the grid. Selected cells follow the name of their row;
    /// if the name has gone, the row in its place is selected instead. True if the names have
    /// changed.
    bool sync();

private:
    QString toolTip(const QModelIndex &index) const;
    QString description(const QModelIndex &index) const;
    QString columnNote(int col) const;
    /// By the row of the grid.
    QStringList notes(int row, int col) const;
    bool holds(const QModelIndex &index) const;
    Qt::Alignment alignment(const QModelIndex &index) const;
    void moveSelection(const QStringList &names);

    Grid &m_grid;
    QStringList m_names; // of the rows, as the views know them
    int m_rows;
};

} // namespace veltrona
