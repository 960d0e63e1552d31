// How a cell of the grid is drawn: its colour, the summary row's base and line, and the mark
// beside the name of a row that didn't earn back its cost.
#pragma once

#include "ui/views/plainText.h"

namespace veltrona {

class GridView;

class GridDelegate : public PlainTextDelegate {
public:
    explicit GridDelegate(GridView &view);
    void paint(QPainter *painter, const QStyleOptionViewItem &option,
               const QModelIndex &index) const override;

protected:
    void initStyleOption(QStyleOptionViewItem *option, const QModelIndex &index) const override;

private:
    GridView &m_view;
};

} // namespace veltrona
