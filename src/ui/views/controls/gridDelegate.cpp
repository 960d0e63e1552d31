#include "ui/views/controls/gridDelegate.h"

#include "ui/views/colorMixing.h"
#include "ui/views/controls/gridModel.h"
#include "ui/views/controls/gridView.h"
#include "ui/views/lossMark.h"

#include <QPainter>

namespace veltrona {

namespace {

constexpr int textMargin = 3; // of the style, on either side of a text

const GridModel &modelOf(const QModelIndex &index) {
    return *static_cast<const GridModel *>(index.model());
}

bool isMarked(const QModelIndex &index) {
    return index.column() == Grid::NameColumn && modelOf(index).isLoss(index);
}
} // namespace

GridDelegate::GridDelegate(GridView &view) : PlainTextDelegate(&view), m_view(view) {}

void GridDelegate::initStyleOption(QStyleOptionViewItem *option, const QModelIndex &index) const {
    PlainTextDelegate::initStyleOption(option, index);
    option->palette.setColor(QPalette::Text, m_view.textColor(index));
    option->palette.setColor(QPalette::HighlightedText, m_view.textColor(index, true));
    option->backgroundBrush = m_view.baseColor(index);
    const int room = option->rect.width() - 2 * textMargin;
    // A name that has to be elided leaves room for the mark.
    if (option->rect.isValid() && isMarked(index) &&
        option->fontMetrics.horizontalAdvance(option->text) > room)
        option->text = option->fontMetrics.elidedText(option->text, Qt::ElideRight,
                                                      room - static_cast<int>(leastLossMarkRoom));
}

void GridDelegate::paint(QPainter *painter, const QStyleOptionViewItem &option,
                         const QModelIndex &index) const {
    PlainTextDelegate::paint(painter, option, index);
    if (modelOf(index).isSummary(index.row())) {
        const QRect cell = option.rect;
        painter->fillRect(
            QRect(cell.left(), cell.top(), cell.width() + 1, 2),
            mixed(m_view.baseColor(index), option.palette.color(QPalette::Text), 0.4));
    }
    if (!isMarked(index))
        return;
    QStyleOptionViewItem shown = option;
    initStyleOption(&shown, index);
    const QRectF cell = option.rect;
    const double textEnd =
        cell.left() + textMargin + shown.fontMetrics.horizontalAdvance(shown.text);
    paintLossMark(
        *painter,
        lossMarkBetween(textEnd, cell.right(), cell.center().y(), shown.fontMetrics.height()),
        m_view.textColor(index, option.state.testFlag(QStyle::State_Selected)));
}

} // namespace veltrona
