#include "ui/views/controls/treeDelegate.h"

#include "core/analysis/grid/statisticsGrid.h"
#include "ui/views/colorMixing.h"
#include "ui/views/controls/treeModel.h"
#include "ui/views/lossMark.h"
#include "ui/views/readableColor.h"

#include <QApplication>

namespace veltrona {

namespace {

constexpr int textMargin = 3; // that the style puts on either side of a text
constexpr double gap = 4;     // between text and mark

double roomForMark(const QStyleOptionViewItem &option) {
    return option.fontMetrics.height() * 0.4 + 2 * gap;
}

bool isLoss(const QModelIndex &index) {
    return index.data(TreeModel::LossRole).toBool();
}

QRect textRect(const QStyleOptionViewItem &option) {
    const QStyle *style = option.widget ? option.widget->style() : QApplication::style();
    return style->subElementRect(QStyle::SE_ItemViewItemText, &option, option.widget);
}

} // namespace

// A name that has to be shortened leaves the mark its room.
void TreeDelegate::initStyleOption(QStyleOptionViewItem *option, const QModelIndex &index) const {
    PlainTextDelegate::initStyleOption(option, index);
    if (isLoss(index) && option->rect.isValid()) {
        const int room = textRect(*option).width() - 2 * textMargin;
        option->text = option->fontMetrics.elidedText(
            option->text, Qt::ElideRight, room - static_cast<int>(roomForMark(*option)));
    }
}

void TreeDelegate::paint(QPainter *painter, const QStyleOptionViewItem &option,
                         const QModelIndex &index) const {
    PlainTextDelegate::paint(painter, option, index);
    if (!isLoss(index))
        return;
    QStyleOptionViewItem shown = option;
    initStyleOption(&shown, index);
    const QRectF text = textRect(shown);
    const double end = text.left() + textMargin + shown.fontMetrics.horizontalAdvance(shown.text);
    const QPalette &palette = option.palette;
    const QColor color = option.state.testFlag(QStyle::State_Selected)
                             ? palette.color(QPalette::HighlightedText)
                             : toColor(readableColor(red, toRgb(palette.color(QPalette::Base))));
    paintLossMark(*painter,
                  lossMarkBetween(end, end + roomForMark(shown), text.center().y(),
                                  shown.fontMetrics.height()),
                  color);
}

} // namespace veltrona
