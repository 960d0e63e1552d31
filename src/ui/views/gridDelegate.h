// How a cell of the grid is drawn: its colour, the summary row's base and line, and the mark of a
// row that didn't earn back its cost, for those who can't tell red from green.
#pragma once

#include "ui/views/plainText.h"

namespace veltrona {

class GridView;

class GridDelegate : public PlainTextDelegate {
public:
    explicit GridDelegate(GridView &view);
    void paint(QPainter *painter, const QStyleOptionViewItem &option,
               const QModelIndex &index) const override;

    /// Where the mark of a cell stands: beside the text, on the side that its alignment leaves
    /// free.
    static QRectF lossMark(const QRectF &cell, bool textAtRight, double textWidth,
                           double lineHeight);

protected:
    void initStyleOption(QStyleOptionViewItem *option, const QModelIndex &index) const override;

private:
    GridView &m_view;
};

} // namespace veltrona
