#include "ui/report/reportDocument.h"

#include "core/base/text.h"
#include "core/report/reportWriter.h"
#include "ui/report/copiedReport.h"

#include <QImageReader>
#include <QPainter>
#include <QTextBlock>
#include <QTextCursor>
#include <QTextTable>

#include <algorithm>
#include <cmath>
#include <utility>

namespace veltrona {

namespace {

/// Gives a layout the lines of a block with the same text.
void copyLines(const QTextBlock &from, QTextLayout &layout) {
    const QTextLayout &source = *from.layout();
    layout.setTextOption(source.textOption());
    layout.setFormats(from.textFormats());
    layout.beginLayout();
    for (int i = 0; i < source.lineCount(); ++i) {
        QTextLine line = layout.createLine();
        if (!line.isValid())
            break;
        line.setLeadingIncluded(true);
        line.setLineWidth(source.lineAt(i).width());
        line.setPosition(source.lineAt(i).position());
    }
    layout.endLayout();
}

int tableEndIn(const QTextDocument &document) {
    return ReportSheet::statisticsIn(document)->lastPosition() + 1;
}

} // namespace

ReportLayout::ReportLayout(QTextDocument *document, const Paper &paper)
    : QAbstractTextDocumentLayout(document), m_pages(paper) {}

void ReportLayout::setSheet(std::unique_ptr<ReportSheet> sheet) {
    for (const int position : std::exchange(m_laidOut, {}))
        document()->findBlock(position).clearLayout();
    m_sheet = std::move(sheet);
    if (m_sheet->rows() > 0) {
        m_rowsBegin = tableEndIn(*document());
        m_firstRow = document()->findBlock(m_rowsBegin).blockNumber();
        m_rowsEnd = blockOf(m_sheet->rows()).position();
        m_frameRowsEnd = tableEndIn(m_sheet->frame());
    }
    m_pages.divide(*m_sheet);
    redraw();
}

void ReportLayout::redraw() {
    emit documentSizeChanged(documentSize());
    emit update();
}

void ReportLayout::setViewWidth(double width) {
    if (m_pages.setViewWidth(width))
        redraw();
}

bool ReportLayout::measure(double top, double bottom) {
    if (!m_sheet->measure(m_pages.toSheet({0, top}).y(), m_pages.toSheet({0, bottom}).y()))
        return false;
    m_pages.divide(*m_sheet);
    redraw();
    return true;
}

bool ReportLayout::isAmongRows(int position) const {
    return position >= m_rowsBegin && position < m_rowsEnd;
}

QTextBlock ReportLayout::blockOf(int row) const {
    return document()->findBlockByNumber(m_firstRow + row);
}

ReportLayout::Cell ReportLayout::cellAt(int position) const {
    const QTextBlock block = document()->findBlock(position);
    const QString text = block.text();
    const auto before = QStringView(text).first(position - block.position());
    return {block.blockNumber() - m_firstRow, int(before.count(QChar::LineSeparator))};
}

int ReportLayout::firstPosition(Cell cell) const {
    int position = blockOf(cell.row).position();
    for (int col = 0; col < cell.col; ++col)
        position += int(m_sheet->cellText(cell.row, col).size()) + 1;
    return position;
}

/// For a position that isn't among the rows; -1 stays -1.
int ReportLayout::toFrame(int position) const {
    return position < m_rowsEnd ? position : position - m_rowsEnd + m_frameRowsEnd;
}

int ReportLayout::fromFrame(int position) const {
    return position < m_frameRowsEnd ? position : position + m_rowsEnd - m_frameRowsEnd;
}

QAbstractTextDocumentLayout::PaintContext ReportLayout::inFrame(const PaintContext &context) const {
    PaintContext frame = context;
    frame.selections.clear();
    frame.cursorPosition =
        isAmongRows(context.cursorPosition) ? -1 : toFrame(context.cursorPosition);
    for (const Selection &selection : context.selections) {
        const auto place = [&](int position) {
            return isAmongRows(position) ? m_rowsBegin - 1 : toFrame(position);
        };
        const int begin = selection.cursor.selectionStart(), end = selection.cursor.selectionEnd();
        QTextCursor cursor(const_cast<QTextDocument *>(&m_sheet->frame()));
        cursor.setPosition(place(begin));
        // A selection that ends among the rows includes all before them, one that begins there all
        // after them.
        cursor.setPosition(isAmongRows(begin) && !isAmongRows(end) ? m_frameRowsEnd : place(begin));
        cursor.setPosition(place(end), QTextCursor::KeepAnchor);
        frame.selections.append({cursor, selection.format});
    }
    return frame;
}

void ReportLayout::draw(QPainter *painter, const PaintContext &context) {
    const auto drawCell = [&](int row, int col, const QTextLayout &layout, const QPointF &place) {
        const int first = firstPosition({row, col});
        const int size = static_cast<int>(layout.text().size());
        QList<QTextLayout::FormatRange> selections;
        for (const Selection &selection : context.selections) {
            const int begin = std::max(selection.cursor.selectionStart() - first, 0);
            const int end = std::min(selection.cursor.selectionEnd() - first, size);
            if (begin < end)
                selections.append({begin, end - begin, selection.format});
        }
        layout.draw(painter, place, selections);
        const int cursor = context.cursorPosition - first;
        if (cursor >= 0 && cursor <= size)
            layout.drawCursor(painter, place, cursor);
    };
    PaintContext frame = inFrame(context);
    m_pages.draw(*painter, context.clip, context.palette, [&](const QRectF &piece) {
        frame.clip = piece;
        m_sheet->draw(*painter, frame, drawCell);
    });
}

int ReportLayout::hitTest(const QPointF &point, Qt::HitTestAccuracy accuracy) const {
    if (accuracy == Qt::ExactHit && !m_pages.isOnSheet(point))
        return -1;
    return hitTestSheet(m_pages.toSheet(point), accuracy);
}

int ReportLayout::hitTestSheet(const QPointF &point, Qt::HitTestAccuracy accuracy) const {
    const QAbstractTextDocumentLayout &frame = *m_sheet->frame().documentLayout();
    if (m_sheet->rows() == 0)
        return frame.hitTest(point, accuracy);
    if (point.y() < m_sheet->rowsTop())
        return std::min(frame.hitTest(point, accuracy), m_rowsBegin - 1);
    if (point.y() < m_sheet->rowsBottom())
        return hitTestCell(point, accuracy);
    const int hit = frame.hitTest(point - QPointF(0, m_sheet->rowsBelow()), accuracy);
    return hit < 0 ? hit : fromFrame(std::max(hit, m_frameRowsEnd));
}

int ReportLayout::hitTestCell(const QPointF &point, Qt::HitTestAccuracy accuracy) const {
    const Cell cell{m_sheet->rowAt(point.y()), m_sheet->columnAt(point.x())};
    QTextLayout layout(m_sheet->cellText(cell.row, cell.col), m_sheet->frame().defaultFont());
    m_sheet->layOutCell(layout, cell.row, cell.col);
    const QPointF inCell = point - m_sheet->cellPlace(cell.row, cell.col);
    for (int i = 0; i < layout.lineCount(); ++i) {
        const QTextLine line = layout.lineAt(i);
        if (inCell.y() >= line.rect().bottom() && i + 1 < layout.lineCount())
            continue;
        if (accuracy == Qt::ExactHit && !line.naturalTextRect().contains(inCell))
            return -1;
        return firstPosition(cell) + line.xToCursor(inCell.x());
    }
    return firstPosition(cell);
}

int ReportLayout::movedBy(int position, double pixels) const {
    const bool isHeading =
        m_rowsEnd > 0 && ReportSheet::statisticsIn(*document())->cellAt(position).isValid();
    if (!isAmongRows(position) && !(isHeading && pixels > 0))
        return -1;
    const QTextBlock block = document()->findBlock(position);
    const QRectF rect = blockBoundingRect(block);
    const QTextLine line = block.layout()->lineForTextPosition(position - block.position());
    QPointF point = m_pages.toSheet({rect.left() + line.cursorToX(position - block.position()),
                                     rect.top() + line.rect().center().y() + pixels});
    if (!isHeading) {
        const Cell cell = cellAt(position);
        const int next = line.lineNumber() + (pixels < 0 ? -1 : 1);
        const bool isInCell =
            next >= 0 && next < block.layout()->lineCount() &&
            cellAt(block.position() + block.layout()->lineAt(next).textStart()).col == cell.col;
        constexpr double intoNext = 6; // across borders and padding of two cells
        if (!isInCell && pixels < 0)
            point.setY(std::min(point.y(), m_sheet->rowTop(cell.row) - intoNext));
        else if (!isInCell)
            point.setY(std::max(point.y(), m_sheet->rowTop(cell.row + 1) + intoNext));
        else if (qAbs(pixels) < line.height())
            point.setY(
                m_pages.toSheet(rect.topLeft() + block.layout()->lineAt(next).rect().center()).y());
    } else {
        point.setY(std::max(point.y(), m_sheet->rowsTop() + 1));
    }
    return hitTestSheet(point, Qt::FuzzyHit);
}

QSizeF ReportLayout::documentSize() const {
    return m_pages.size();
}

QRectF ReportLayout::frameBoundingRect(QTextFrame *) const {
    return {QPointF(), documentSize()};
}

QRectF ReportLayout::blockBoundingRect(const QTextBlock &block) const {
    if (!m_sheet || !block.isValid())
        return {};
    const int position = block.position();
    m_laidOut.insert(position);
    if (isAmongRows(position)) {
        const int row = block.blockNumber() - m_firstRow;
        layOutRow(block, row);
        return block.layout()->boundingRect().translated(
            m_pages.fromSheet(m_sheet->cellPlace(row, 0)));
    }
    const QTextBlock same = m_sheet->frame().findBlock(toFrame(position));
    QRectF rect = m_sheet->frame().documentLayout()->blockBoundingRect(same);
    copyLines(same, *block.layout());
    if (position >= m_rowsEnd && m_rowsEnd > 0)
        rect.translate(0, m_sheet->rowsBelow());
    rect.moveTopLeft(m_pages.fromSheet(rect.topLeft()));
    return rect;
}

/// Each line at its place in its cell, relative to the text of the row's first cell.
void ReportLayout::layOutRow(const QTextBlock &block, int row) const {
    const QString text = block.text();
    QTextLayout &layout = *block.layout();
    QTextOption option = m_sheet->frame().defaultTextOption();
    option.setAlignment(Qt::AlignLeft | Qt::AlignAbsolute);
    option.setTextDirection(m_sheet->columnFormat(0).layoutDirection());
    layout.setTextOption(option);
    layout.setFormats({{0, int(text.size()), m_sheet->rowFormat(row)}});
    layout.beginLayout();
    const QPointF first = m_sheet->cellPlace(row, 0);
    QPointF place;
    int col = 0;
    for (QTextLine line = layout.createLine(); line.isValid(); line = layout.createLine()) {
        const double width = m_sheet->columnWidth(col);
        line.setLeadingIncluded(true);
        line.setLineWidth(width);
        const bool isRight = m_sheet->columnFormat(col).alignment() & Qt::AlignRight;
        // A row higher than a page goes on at the next one.
        line.setPosition(m_pages.fromSheet(first + place) - m_pages.fromSheet(first) +
                         QPointF(isRight ? width - line.naturalTextWidth() : 0, 0));
        place.ry() += std::ceil(line.ascent() + line.descent() + line.leading());
        const int end = line.textStart() + line.textLength();
        if (line.textLength() > 0 && text[end - 1] == QChar::LineSeparator) {
            ++col;
            place = {m_sheet->cellPlace(row, col).x() - first.x(), 0};
        }
    }
    layout.endLayout();
}

ReportDocument::ReportDocument(const QString &path, const Report &report, const Paper &paper)
    : m_report(report), m_layout(new ReportLayout(this, paper)) {
    requireWritten(report, path);
    m_graph = QImageReader(graphPath(path), "jpg").read();
    setUndoRedoEnabled(false);
    setDocumentLayout(m_layout);
    auto sheet = std::make_unique<ReportSheet>(m_report, m_graph, ReportSheet::Options{});
    setHtml(htmlOf(m_report, {}));
    if (sheet->rows() > 0)
        fillRows(*sheet);
    m_layout->setSheet(std::move(sheet));
}

void ReportDocument::fillRows(const ReportSheet &sheet) {
    QTextCursor cursor(this);
    cursor.beginEditBlock();
    cursor.setPosition(tableEndIn(*this));
    const QTextBlockFormat after = cursor.blockFormat();
    const QTextCharFormat charactersAfter = cursor.blockCharFormat();
    cursor.setBlockFormat({});
    for (int row = 0; row < sheet.rows(); ++row) {
        QString text = sheet.cellText(row, 0);
        for (int col = 1; col < gridColumn::Shown; ++col)
            text += QChar::LineSeparator + sheet.cellText(row, col);
        cursor.insertText(text, sheet.rowFormat(row));
        if (row + 1 < sheet.rows())
            cursor.insertBlock();
    }
    cursor.insertBlock(after, charactersAfter);
    cursor.endEditBlock();
}

void ReportDocument::setZoom(double zoom) {
    m_zoom = zoom;
    m_layout->setSheet(
        std::make_unique<ReportSheet>(m_report, m_graph, ReportSheet::Options{zoom}));
}

ReportSheet ReportDocument::paperSheet() const {
    return {m_report, m_graph, {.forPaper = true}};
}

QMimeData *ReportDocument::copied(const QTextCursor &selection) const {
    return copiedReport(m_report, selection.anchor(), selection.position());
}

QVariant ReportDocument::loadResource(int, const QUrl &) {
    return {};
}

} // namespace veltrona
