#include "ui/views/gridDelegate.h"

#include "ui/views/colorMixing.h"
#include "ui/views/gridModel.h"
#include "ui/views/gridView.h"

#include <QPainter>

#include <algorithm>
#include <cmath>

namespace veltrona {

namespace {
const GridModel &modelOf(const QModelIndex &index) {
    return *static_cast<const GridModel *>(index.model());
}
} // namespace

GridDelegate::GridDelegate(GridView &view) : PlainTextDelegate(&view), m_view(view) {}

QRectF GridDelegate::lossMark(const QRectF &cell, bool textAtRight, double textWidth,
                              double lineHeight) {
    // The narrowest column has 8 pixels beside a text of 12, of which the text's margins take 6.
    constexpr double margin = 3;
    const double free = cell.width() - textWidth - margin;
    const double size = std::clamp(free - 1, 4.0, std::round(lineHeight * 0.4));
    const double x = textAtRight
                         ? std::max(cell.left(), cell.right() - margin - textWidth - 3 - size)
                         : std::min(cell.right() - size, cell.left() + margin + textWidth + 3);
    return {x, std::round(cell.center().y() - size / 2 + 1), size, size};
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
        painter->fillRect(
            QRect(cell.left(), cell.top(), cell.width() + 1, 2),
            mixed(m_view.baseColor(index), option.palette.color(QPalette::Text), 0.4));
    }
    if (modelOf(index).isLoss(index)) {
        const Qt::Alignment alignment(index.data(Qt::TextAlignmentRole).toInt());
        const QString text = displayText(index.data(), option.locale);
        const QRectF box =
            lossMark(option.rect, alignment.testFlag(Qt::AlignRight),
                     option.fontMetrics.horizontalAdvance(text), option.fontMetrics.height());
        painter->setRenderHint(QPainter::Antialiasing);
        painter->setPen(Qt::NoPen);
        painter->setBrush(m_view.textColor(index, option.state.testFlag(QStyle::State_Selected)));
        painter->drawPolygon(
            QPolygonF({box.topLeft(), box.topRight(), QPointF(box.center().x(), box.bottom())}));
    }
    painter->restore();
}

} // namespace veltrona
