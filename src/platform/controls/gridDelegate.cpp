#include "platform/controls/gridDelegate.h"

#include "platform/controls/gridModel.h"
#include "platform/controls/gridView.h"

#include <QPainter>

#include <algorithm>

namespace veltrona {

namespace {
const GridModel &modelOf(const QModelIndex &index) {
    return *static_cast<const GridModel *>(index.model());
}
} // namespace

GridDelegate::GridDelegate(GridView &view) : PlainTextDelegate(&view), m_view(view) {}

QRect GridDelegate::lossMark(const QRect &cell, Qt::Alignment textAlignment, int lineHeight) {
    // The padding of a column is 8 pixels for a line of 15, of which the text's margin takes 3.
    const int size = std::max(4, lineHeight / 3);
    const bool left = textAlignment.testFlag(Qt::AlignRight);
    const int x = left ? cell.left() : cell.right() - size + 1;
    return {x, cell.center().y() - size / 2, size, size};
}

void GridDelegate::initStyleOption(QStyleOptionViewItem *option, const QModelIndex &index) const {
    PlainTextDelegate::initStyleOption(option, index);
    option->palette.setColor(QPalette::Text, m_view.textColor(index));
    option->palette.setColor(QPalette::HighlightedText, m_view.textColor(index, true));
    if (modelOf(index).isSummary(index.row()))
        option->backgroundBrush = m_view.baseColor(index);
}

void GridDelegate::paint(QPainter *painter, const QStyleOptionViewItem &option,
                         const QModelIndex &index) const {
    PlainTextDelegate::paint(painter, option, index);
    painter->save();
    if (modelOf(index).isSummary(index.row())) {
        const QRect cell = option.rect;
        painter->fillRect(QRect(cell.left(), cell.top(), cell.width() + 1, 2),
                          option.palette.color(QPalette::Mid));
    }
    if (modelOf(index).isLoss(index)) {
        const Qt::Alignment alignment(index.data(Qt::TextAlignmentRole).toInt());
        const QRect mark = lossMark(option.rect, alignment, option.fontMetrics.height());
        painter->setRenderHint(QPainter::Antialiasing);
        painter->setPen(Qt::NoPen);
        painter->setBrush(m_view.textColor(index, option.state.testFlag(QStyle::State_Selected)));
        const QRectF box(mark);
        painter->drawPolygon(
            QPolygonF({box.topLeft(), box.topRight(), QPointF(box.center().x(), box.bottom())}));
    }
    painter->restore();
}

} // namespace veltrona
