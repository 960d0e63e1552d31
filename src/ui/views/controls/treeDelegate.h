// How a node of the tree is drawn: its icon and text, and beside the text the mark of a node that
// didn't earn back its cost.
#pragma once

#include "ui/views/plainText.h"

namespace veltrona {

class TreeDelegate : public PlainTextDelegate {
public:
    using PlainTextDelegate::PlainTextDelegate;
    void paint(QPainter *painter, const QStyleOptionViewItem &option,
               const QModelIndex &index) const override;

protected:
    void initStyleOption(QStyleOptionViewItem *option, const QModelIndex &index) const override;
};

} // namespace veltrona
