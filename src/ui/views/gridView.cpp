#include "ui/views/gridView.h"

#include "core/base/text.h"
#include "ui/views/colorMixing.h"
#include "ui/views/gridAccessible.h"
#include "ui/views/gridDelegate.h"
#include "ui/views/gridModel.h"
#include "ui/views/readableColor.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QHeaderView>
#include <QHelpEvent>
#include <QKeyEvent>
#include <QProxyStyle>
#include <QStyleOptionHeader>

#include <cmath>
#include <set>

namespace veltrona {

namespace {

constexpr int rowPadding = 6; // pixels above and below a line together
constexpr int textMargins = 6;

/// Puts headings over the texts of their columns, which the style sets further in.
class HeadingStyle : public QProxyStyle {
public:
    void drawControl(ControlElement element, const QStyleOption *option, QPainter *painter,
                     const QWidget *widget) const override {
        const auto *heading = qstyleoption_cast<const QStyleOptionHeader *>(option);
        if (element != CE_HeaderLabel || !heading)
            return QProxyStyle::drawControl(element, option, painter, widget);
        constexpr int gridLine = 1;
        const int further = textMargins / 2 - pixelMetric(PM_HeaderMargin, option, widget);
        QStyleOptionHeader moved = *heading;
        moved.version = QStyleOptionHeader::Version; // what the copy holds
        moved.rect.adjust(further, 0, -further - gridLine, 0);
        QProxyStyle::drawControl(element, &moved, painter, widget);
    }
};

} // namespace

GridView::GridView(Grid &grid, QWidget *parent)
    : QTableView(parent), m_grid(grid), m_model(new GridModel(grid, this)),
      m_shownWidths(static_cast<std::size_t>(grid.Cols()), -1) {
    installGridAccessible();
    setModel(m_model);
    setItemDelegate(new GridDelegate(*this));
    setEditTriggers(NoEditTriggers);
    setTabKeyNavigation(false);
    setWordWrap(false);
    setHorizontalScrollMode(ScrollPerPixel);
    setVerticalScrollMode(ScrollPerPixel);
    verticalHeader()->hide();
    verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    horizontalHeader()->setHighlightSections(false);
    auto *headings = new HeadingStyle;
    headings->setParent(this);
    horizontalHeader()->setStyle(headings);
    horizontalHeader()->setMinimumSectionSize(1);
    applyFont();
    applyWidths(true);
    m_grid.onChange = [this] { refresh(); };
}

GridView::~GridView() {
    m_grid.onChange = nullptr;
}

void GridView::setPixelsPerTwip(double factor) {
    m_pixelsPerTwip = factor;
    applyWidths(true);
}

void GridView::refresh() {
    m_model->sync();
    applyWidths(false);
}

void GridView::applyWidths(bool all) {
    for (int col = 0; col < m_model->columnCount(); ++col) {
        const int twips = m_grid.ColWidth(col);
        int &shown = m_shownWidths[static_cast<std::size_t>(col)];
        if (twips == shown && !all)
            continue;
        shown = twips;
        setColumnHidden(col, twips == 0);
        if (twips > 0)
            setColumnWidth(col, static_cast<int>(std::ceil(twips * m_pixelsPerTwip)));
    }
}

void GridView::applyFont() {
    verticalHeader()->setMinimumSectionSize(1);
    verticalHeader()->setDefaultSectionSize(fontMetrics().height() + rowPadding);
}

void GridView::changeEvent(QEvent *event) {
    QTableView::changeEvent(event);
    if (event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange)
        applyFont();
}

void GridView::currentChanged(const QModelIndex &current, const QModelIndex &previous) {
    if (current.row() != previous.row())
        tellRowEntered(*this);
    QTableView::currentChanged(current, previous);
}

QColor GridView::baseColor(const QModelIndex &index) const {
    const QColor base = palette().color(QPalette::Base);
    return m_model->isSummary(index.row()) ? mixed(base, palette().color(QPalette::Text), 0.07)
                                           : base;
}

QColor GridView::textColor(const QModelIndex &index, bool selected) const {
    const QColor base = selected ? palette().color(QPalette::Highlight) : baseColor(index);
    return toColor(readableColor(m_model->cellColor(index), toRgb(base)));
}

bool GridView::isLoss(const QModelIndex &index) const {
    return m_model->isLoss(index);
}

QString GridView::selectedText() const {
    QModelIndexList cells = selectionModel()->selectedIndexes();
    if (cells.isEmpty() && currentIndex().isValid())
        cells.append(currentIndex());
    std::set<int> rows;
    std::set<int> columns;
    std::set<std::pair<int, int>> chosen;
    for (const QModelIndex &cell : cells) {
        if (isColumnHidden(cell.column()))
            continue;
        rows.insert(cell.row());
        columns.insert(cell.column());
        chosen.insert({cell.row(), cell.column()});
    }
    QStringList lines;
    for (const int row : rows) {
        QStringList line;
        for (const int column : columns) {
            const bool taken = chosen.contains({row, column});
            line.append(taken ? onOneLine(m_model->index(row, column).data().toString())
                              : QString());
        }
        lines.append(line.join(QLatin1Char('\t')));
    }
    return lines.join(QLatin1Char('\n'));
}

bool GridView::event(QEvent *event) {
    // Else a shortcut of the window could take the copy key before the grid sees it.
    if (event->type() == QEvent::ShortcutOverride &&
        static_cast<QKeyEvent *>(event)->matches(QKeySequence::Copy)) {
        event->accept();
        return true;
    }
    return QTableView::event(event);
}

void GridView::keyPressEvent(QKeyEvent *event) {
    if (!event->matches(QKeySequence::Copy)) {
        QTableView::keyPressEvent(event);
        return;
    }
    const QString text = selectedText();
    if (!text.isEmpty())
        QGuiApplication::clipboard()->setText(text);
    event->accept();
}

bool GridView::viewportEvent(QEvent *event) {
    if (event->type() != QEvent::ToolTip)
        return QTableView::viewportEvent(event);
    showToolTipIfElided(*this, *static_cast<QHelpEvent *>(event), textMargins);
    return true;
}

} // namespace veltrona
