// The view of a grid, which must outlive it. Reads the grid live and sets its onChange.
#pragma once

#include "core/controls/grid.h"

#include <QColor>
#include <QScopedValueRollback>
#include <QString>
#include <QTableView>

#include <functional>
#include <vector>

namespace veltrona {

class GridModel;

class GridView : public QTableView {
    Q_OBJECT
public:
    explicit GridView(Grid &grid, QWidget *parent = nullptr);

    /// Scale of the column widths.
    void setPixelsPerTwip(double factor);

    /// The colours of a cell on screen: the grid's own, adjusted for contrast.
    QColor textColor(const QModelIndex &index, bool selected = false) const;
    QColor baseColor(const QModelIndex &index) const;

    const Grid &grid() const { return m_grid; }

    /// The selected cells, or else the current one, as tab-separated lines; on request with the
    /// headings of their columns.
    QString selectedText(bool withHeadings = false) const;

protected:
    bool viewportEvent(QEvent *event) override;
    void paintEvent(QPaintEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void changeEvent(QEvent *event) override;
    void focusInEvent(QFocusEvent *event) override;
    void currentChanged(const QModelIndex &current, const QModelIndex &previous) override;
    void selectionChanged(const QItemSelection &now, const QItemSelection &before) override;

private:
    void refresh();
    void resetMark();
    void applyWidths(bool all);
    void applyFont();
    void copy(bool withHeadings) const;
    void chooseRow(const QModelIndex &index);
    /// By key: all that explains the current cell.
    void explain();

    Grid &m_grid;
    GridModel *m_model;
    QString m_subject; // of the rows that are shown
    double m_pixelsPerTwip = 1.0 / 15;
    std::vector<int> m_shownWidths; // in twips, as last set here; the user may have changed them
    QScopedValueRollback<std::function<void()>> m_onChange; // the grid's
};

} // namespace veltrona
