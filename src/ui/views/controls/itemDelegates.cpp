#include "ui/views/controls/itemDelegates.h"

#include "core/analysis/grid/statisticsGrid.h"
#include "ui/views/colors.h"
#include "ui/views/controls/gridModel.h"
#include "ui/views/controls/gridView.h"
#include "ui/views/controls/treeModel.h"
#include "ui/views/plainText.h"

#include <QApplication>
#include <QPainter>

#include <algorithm>
#include <cmath>

namespace veltrona {

namespace {

constexpr int textMargin = 3;    // that the style puts on either side of a text
constexpr double minAir = 1;     // on either side of a mark, where there is little room
constexpr double minMark = 3;    // the smallest mark
constexpr double maxGap = 4;     // between text and mark, where there is much room
constexpr double markPart = 0.4; // of the line height

double textEnd(const QStyleOptionViewItem &item, const QRectF &place) {
    return place.left() + textMargin + item.fontMetrics.horizontalAdvance(item.text);
}

void paintLossMark(QPainter &painter, const QStyleOptionViewItem &item, const QRectF &place,
                   double lineEnd, const QColor &color) {
    QRectF mark = lossMarkBetween(textEnd(item, place), lineEnd, place.center().y(),
                                  item.fontMetrics.height());
    if (item.direction == Qt::RightToLeft)
        mark.moveRight(place.left() + place.right() - mark.left());
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(color);
    painter.drawPolygon(
        QPolygonF({mark.topLeft(), mark.topRight(), QPointF(mark.center().x(), mark.bottom())}));
    painter.restore();
}

class GridDelegate : public PlainTextDelegate {
public:
    explicit GridDelegate(GridView &view) : PlainTextDelegate(&view), m_view(view) {}

    void paint(QPainter *painter, const QStyleOptionViewItem &option,
               const QModelIndex &index) const override {
        PlainTextDelegate::paint(painter, option, index);
        const QRect &cell = option.rect;
        if (modelOf(index).isSummary(index.row()))
            painter->fillRect(
                QRect(cell.left(), cell.top(), cell.width() + 1, 2),
                mixed(m_view.baseColor(index), option.palette.color(QPalette::Text), 0.4));
        if (!isMarked(index))
            return;
        QStyleOptionViewItem item = option;
        initStyleOption(&item, index);
        paintLossMark(*painter, item, cell, QRectF(cell).right(),
                      m_view.textColor(index, option.state.testFlag(QStyle::State_Selected)));
    }

protected:
    void initStyleOption(QStyleOptionViewItem *option, const QModelIndex &index) const override {
        PlainTextDelegate::initStyleOption(option, index);
        option->palette.setColor(QPalette::Text, m_view.textColor(index));
        option->palette.setColor(QPalette::HighlightedText, m_view.textColor(index, true));
        option->backgroundBrush = m_view.baseColor(index);
        const int room = option->rect.width() - textMargin - static_cast<int>(minMark + minAir);
        // A name that has to be elided leaves room for the mark.
        if (option->rect.isValid() && isMarked(index) &&
            option->fontMetrics.horizontalAdvance(option->text) > room)
            option->text = option->fontMetrics.elidedText(option->text, Qt::ElideRight,
                                                          room - static_cast<int>(minAir));
    }

private:
    static const GridModel &modelOf(const QModelIndex &index) {
        return *static_cast<const GridModel *>(index.model());
    }
    static bool isMarked(const QModelIndex &index) {
        return index.column() == Grid::NameColumn && modelOf(index).isLoss(index);
    }

    GridView &m_view;
};

class TreeDelegate : public PlainTextDelegate {
public:
    using PlainTextDelegate::PlainTextDelegate;

    void paint(QPainter *painter, const QStyleOptionViewItem &option,
               const QModelIndex &index) const override {
        PlainTextDelegate::paint(painter, option, index);
        if (!isMarked(index))
            return;
        QStyleOptionViewItem item = option;
        initStyleOption(&item, index);
        const QRectF place = textRect(item);
        const QPalette &palette = option.palette;
        paintLossMark(*painter, item, place, textEnd(item, place) + roomForMark(item),
                      option.state.testFlag(QStyle::State_Selected)
                          ? palette.color(QPalette::HighlightedText)
                          : readableColor(toColor(red), palette.color(QPalette::Base),
                                          contrastOnBase(palette)));
    }

protected:
    // A name that has to be elided leaves room for the mark.
    void initStyleOption(QStyleOptionViewItem *option, const QModelIndex &index) const override {
        PlainTextDelegate::initStyleOption(option, index);
        if (isMarked(index) && option->rect.isValid()) {
            const int room = textRect(*option).width() - 2 * textMargin;
            option->text = option->fontMetrics.elidedText(
                option->text, Qt::ElideRight, room - static_cast<int>(roomForMark(*option)));
        }
    }

private:
    static bool isMarked(const QModelIndex &index) {
        return index.data(TreeModel::LossRole).toBool();
    }
    static double roomForMark(const QStyleOptionViewItem &item) {
        return item.fontMetrics.height() * markPart + 2 * maxGap;
    }
    static QRect textRect(const QStyleOptionViewItem &item) {
        const QStyle *style = item.widget ? item.widget->style() : QApplication::style();
        return style->subElementRect(QStyle::SE_ItemViewItemText, &item, item.widget);
    }
};

} // namespace

QAbstractItemDelegate *newGridDelegate(GridView &view) {
    return new GridDelegate(view);
}

QAbstractItemDelegate *newTreeDelegate(QObject *parent) {
    return new TreeDelegate(parent);
}

QRectF lossMarkBetween(double textEnd, double lineEnd, double middle, double lineHeight) {
    const double room = lineEnd - textEnd;
    const double size = std::clamp(room - 2 * minAir, minMark, std::round(lineHeight * markPart));
    const double gap = std::clamp((room - size) / 2, 0.0, maxGap);
    // Rather close to its text than to a line of the grid.
    const double left = std::min(textEnd + gap, lineEnd - minAir - size);
    return {left, std::round(middle - size / 2 + 1), size, size};
}

} // namespace veltrona
