#include "ui/views/controls/gridView.h"

#include "core/base/text.h"
#include "ui/views/accessible/announcement.h"
#include "ui/views/accessible/viewAccessibles.h"
#include "ui/views/colors.h"
#include "ui/views/controls/gridModel.h"
#include "ui/views/controls/itemDelegates.h"
#include "ui/views/menuEntry.h"
#include "ui/views/plainText.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QHash>
#include <QHeaderView>
#include <QHelpEvent>
#include <QKeyEvent>
#include <QPainter>
#include <QProxyStyle>
#include <QStyleOptionHeader>

#include <algorithm>
#include <cmath>
#include <map>
#include <set>

namespace veltrona {

namespace {

constexpr int rowPadding = 6; // pixels above and below a line together
constexpr int textMargins = 6;

/// Aligns headings with the texts of their columns, which have wider margins. A dotted line below
/// a text invites to hover.
class HeadingStyle : public QProxyStyle {
public:
    explicit HeadingStyle(const Grid &grid) : m_grid(grid) {}

    void drawControl(ControlElement element, const QStyleOption *option, QPainter *painter,
                     const QWidget *widget) const override {
        const auto *heading = qstyleoption_cast<const QStyleOptionHeader *>(option);
        if (element != CE_HeaderLabel || !heading)
            return QProxyStyle::drawControl(element, option, painter, widget);
        constexpr int gridLine = 1;
        const int further = textMargins / 2 - pixelMetric(PM_HeaderMargin, option, widget);
        QStyleOptionHeader moved = *heading;
        moved.version = QStyleOptionHeader::Version; // of the sliced copy
        moved.rect.adjust(further, 0, -further - gridLine, 0);
        QProxyStyle::drawControl(element, &moved, painter, widget);
        if (m_grid.invitesToRead && m_grid.invitesToRead(heading->section))
            drawInvitation(moved, *painter);
    }

private:
    static void drawInvitation(const QStyleOptionHeader &heading, QPainter &painter) {
        const int width = heading.fontMetrics.horizontalAdvance(heading.text);
        const QRect text = alignedRect(
            heading.direction, heading.textAlignment,
            {std::min(width, heading.rect.width()), heading.fontMetrics.height()}, heading.rect);
        painter.save();
        painter.setPen(QPen(heading.palette.color(QPalette::ButtonText), 1, Qt::DotLine));
        const int y = text.bottom() - heading.fontMetrics.descent() + 2;
        painter.drawLine(text.left(), y, text.right(), y);
        painter.restore();
    }

    const Grid &m_grid;
};

} // namespace

GridView::GridView(Grid &grid, QWidget *parent)
    : QTableView(parent), m_grid(grid), m_model(new GridModel(grid, this)),
      m_shownWidths(static_cast<std::size_t>(grid.Cols()), -1),
      m_onChange(grid.onChange, [this] { refresh(); }) {
    installGridAccessible();
    setModel(m_model);
    setItemDelegate(newGridDelegate(*this));
    setEditTriggers(NoEditTriggers);
    setTabKeyNavigation(false);
    setWordWrap(false);
    setHorizontalScrollMode(ScrollPerPixel);
    setVerticalScrollMode(ScrollPerPixel);
    verticalHeader()->hide();
    verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    horizontalHeader()->setHighlightSections(false);
    auto *headings = new HeadingStyle(m_grid);
    headings->setParent(this);
    horizontalHeader()->setStyle(headings);
    horizontalHeader()->setMinimumSectionSize(1);
    addExplainEntry(*this, [this] { explain(); });
    addCopyEntries(
        *this, "Copy", [this] { copy(false); }, "Copy with Headings", [this] { copy(true); });
    connect(this, &QTableView::doubleClicked, this, &GridView::chooseRow);
    applyFont();
    applyWidths(true);
}

void GridView::setPixelsPerTwip(double factor) {
    m_pixelsPerTwip = factor;
    applyWidths(true);
}

void GridView::refresh() {
    const bool renamed = m_model->sync();
    applyWidths(false);
    if (!m_grid.notice().isEmpty())
        viewport()->update();
    if (m_subject != m_grid.subject())
        resetMark();
    if (!renamed)
        return;
    // After layoutChanged the view delays its layout and ignores dataChanged until then: for one
    // frame the new headings would stand above the old rows.
    executeDelayedItemsLayout();
    viewport()->update();
}

/// The marked cell belonged to other rows. With the focus here the keys go on from the first one.
void GridView::resetMark() {
    m_subject = m_grid.subject();
    if (hasFocus())
        selectionModel()->setCurrentIndex(m_model->index(0, Grid::NameColumn),
                                          QItemSelectionModel::ClearAndSelect);
    else
        selectionModel()->clear();
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

// Qt begins at the first cell only as long as there has never been a current one.
void GridView::focusInEvent(QFocusEvent *event) {
    QTableView::focusInEvent(event);
    if (!currentIndex().isValid() && event->reason() != Qt::MouseFocusReason)
        selectionModel()->setCurrentIndex(m_model->index(0, Grid::NameColumn),
                                          QItemSelectionModel::NoUpdate);
}

// Screen readers say what QTableView notifies them of, which only concerns those who are here.
// NOLINTBEGIN(bugprone-parent-virtual-call)
void GridView::currentChanged(const QModelIndex &current, const QModelIndex &previous) {
    if (hasFocus()) {
        if (current.row() != previous.row())
            notifyRowEntered(*this);
        QTableView::currentChanged(current, previous);
    } else {
        QAbstractItemView::currentChanged(current, previous);
    }
    for (const QModelIndex &index : {previous, current}) {
        const QRect cell = visualRect(index);
        viewport()->update(0, cell.top(), viewport()->width(), cell.height());
    }
}

void GridView::selectionChanged(const QItemSelection &now, const QItemSelection &before) {
    if (hasFocus())
        QTableView::selectionChanged(now, before);
    else
        QAbstractItemView::selectionChanged(now, before);
}
// NOLINTEND(bugprone-parent-virtual-call)

QColor GridView::baseColor(const QModelIndex &index) const {
    QColor base = palette().color(QPalette::Base);
    if (m_model->isSummary(index.row()))
        base = mixed(base, palette().color(QPalette::Text), 0.07);
    // Highlights the whole current row, in case its name has scrolled away.
    if (index.row() == currentIndex().row())
        base = mixed(base, palette().color(QPalette::Highlight), 0.15);
    return base;
}

QColor GridView::textColor(const QModelIndex &index, bool selected) const {
    const QColor color = toColor(m_model->cellColor(index));
    return selected ? readableColor(color, palette().color(QPalette::Highlight))
                    : readableColor(color, baseColor(index), contrastOnBase(palette()));
}

QString GridView::selectedText(bool withHeadings) const {
    QModelIndexList cells = selectionModel()->selectedIndexes();
    if (cells.isEmpty() && currentIndex().isValid())
        cells.append(currentIndex());
    std::set<int> columns;
    std::map<int, QHash<int, QString>> rows; // by row, then by column
    for (const QModelIndex &cell : cells) {
        if (isColumnHidden(cell.column()))
            continue;
        columns.insert(cell.column());
        rows[cell.row()].insert(cell.column(), cell.data().toString());
    }
    if (withHeadings && !rows.empty()) {
        constexpr int aboveAll = -1;
        for (const int column : columns)
            rows[aboveAll].insert(column, m_grid.TextMatrix(gridRow::Heading, column));
    }
    QStringList lines;
    for (const auto &[row, texts] : rows) {
        QStringList line;
        for (const int column : columns)
            line.append(onOneLine(texts.value(column)));
        lines.append(line.join(u'\t'));
    }
    return lines.join(u'\n');
}

void GridView::copy(bool withHeadings) const {
    const QString text = selectedText(withHeadings);
    if (text.isEmpty())
        return;
    QGuiApplication::clipboard()->setText(text);
    announceCopy(*this);
}

void GridView::explain() {
    const QString text = m_model->explanation(currentIndex());
    if (!text.isEmpty())
        answerByKey(*viewport(), visualRect(currentIndex()), text);
}

void GridView::chooseRow(const QModelIndex &index) {
    if (index.isValid() && m_grid.onRowChosen)
        m_grid.onRowChosen(GridModel::gridRowOf(index.row()));
}

void GridView::keyPressEvent(QKeyEvent *event) {
    const bool isEnter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    if (isEnter && !(event->modifiers() & ~Qt::KeypadModifier))
        chooseRow(currentIndex());
    else
        QTableView::keyPressEvent(event);
}

/// The notice stands below the rows of an empty grid.
void GridView::paintEvent(QPaintEvent *event) {
    QTableView::paintEvent(event);
    if (m_grid.notice().isEmpty())
        return;
    constexpr int margin = 12;
    const QRect free = viewport()->rect().adjusted(0, verticalHeader()->length(), 0, 0);
    QPainter painter(viewport());
    painter.setPen(mixed(palette().color(QPalette::Base), palette().color(QPalette::Text), 0.7));
    painter.drawText(free.marginsRemoved({margin, margin, margin, margin}),
                     Qt::AlignHCenter | Qt::AlignTop | Qt::TextWordWrap, m_grid.notice());
}

bool GridView::viewportEvent(QEvent *event) {
    if (event->type() != QEvent::ToolTip)
        return QTableView::viewportEvent(event);
    showToolTip(*this, *static_cast<QHelpEvent *>(event), textMargins);
    return true;
}

} // namespace veltrona
