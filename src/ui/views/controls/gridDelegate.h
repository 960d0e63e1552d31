// Draws the cells of a grid: colours, background and line of the summary row, and the mark beside
// the name of a row with a loss.
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
