// A grid on screen. Reads the grid live and takes its onChange; the grid must outlive the view.
#pragma once

#include "core/controls/grid.h"

#include <QTableView>

namespace veltrona {

class GridModel;

class GridView : public QTableView {
    Q_OBJECT
public:
    explicit GridView(Grid &grid, QWidget *parent = nullptr);
    ~GridView() override;

    /// The factor from the grid's widths in twips to pixels of the screen.
    void setPixelsPerTwip(double factor);

    /// The colours in which a cell is drawn: the grid's own, mapped so that they can be read.
    QColor textColor(const QModelIndex &index, bool selected = false) const;
    QColor baseColor(const QModelIndex &index) const;
    /// A cell of a row that didn't earn back its cost.
    bool isLoss(const QModelIndex &index) const;

    /// The selected cells, or else the current one: a line for each row, cells parted by tabs; with
    /// their columns' headings above, if asked for.
    QString selectedText(bool withHeadings = false) const;

protected:
    bool viewportEvent(QEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void changeEvent(QEvent *event) override;
    void currentChanged(const QModelIndex &current, const QModelIndex &previous) override;

private:
    void refresh();
    void applyWidths(bool all);
    void applyFont();
    void copy(bool withHeadings) const;
    void chooseRow(const QModelIndex &index);
    void updateRow(const QModelIndex &index);

    Grid &m_grid;
    GridModel *m_model;
    double m_pixelsPerTwip = 1.0 / 15;
    std::vector<int> m_shownWidths; // in twips, as last applied: the user may have changed them
};

} // namespace veltrona
