// The statistics grid as an item model: reads the cells live and owns nothing of them. Row 0 of the
// grid is the horizontal heading, so row r of the model is row r + 1 of the grid.
#pragma once

#include "core/analysis/grid/statisticsGrid.h"

#include <QAbstractTableModel>
#include <QStringList>

namespace veltrona {

class GridModel : public QAbstractTableModel {
    Q_OBJECT
public:
    explicit GridModel(Grid &grid, QObject *parent = nullptr);

    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

    /// The colour that the grid holds for the cell.
    Rgb cellColor(const QModelIndex &index) const;
    /// A cell of a row that didn't earn back its cost.
    bool isLoss(const QModelIndex &index) const;
    bool isSummary(int row) const { return row + 1 == gridRow::summary(m_rows + 1); }

    /// Brings the views in step after a change of the grid. Selected cells follow the name of
    /// their row; a row whose name has gone leaves its selection to the row in its place.
    void sync();

private:
    QString toolTip(const QModelIndex &index) const;
    bool holds(const QModelIndex &index) const;
    Qt::Alignment alignment(const QModelIndex &index) const;
    void moveSelection(const QStringList &names);

    Grid &m_grid;
    QStringList m_names; // the column of names as the views know it
    int m_rows;
};

} // namespace veltrona
