#include "ui/report/reportDocument.h"

#include "core/report/reportWriter.h"

#include <QImageReader>
#include <QPainter>
#include <QTextBlock>
#include <QTextCursor>
#include <QTextTable>

#include <algorithm>
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

int rowsEndIn(const QTextDocument &document) {
    return ReportSheet::statisticsIn(document)->lastPosition() + 1;
}

} // namespace

ReportLayout::ReportLayout(QTextDocument *document) : QAbstractTextDocumentLayout(document) {}

void ReportLayout::setSheet(std::unique_ptr<ReportSheet> sheet) {
    for (const int position : std::exchange(m_laidOut, {}))
        document()->findBlock(position).clearLayout();
    m_sheet = std::move(sheet);
    if (m_sheet->rows() > 0) {
        m_rowsBegin = ReportSheet::statisticsIn(*document())->cellAt(1, 0).firstPosition();
        m_rowsEnd = rowsEndIn(*document());
        m_frameRowsEnd = rowsEndIn(m_sheet->frame());
    }
    emit documentSizeChanged(documentSize());
    emit update();
}

bool ReportLayout::isAmongRows(int position) const {
    return position >= m_rowsBegin && position < m_rowsEnd;
}

ReportLayout::Cell ReportLayout::cellAt(int position) const {
    const QTextTableCell cell = ReportSheet::statisticsIn(*document())->cellAt(position);
    return {std::max(cell.row() - 1, 0), std::max(cell.column(), 0)};
}

int ReportLayout::firstPosition(Cell cell) const {
    return ReportSheet::statisticsIn(*document())->cellAt(cell.row + 1, cell.col).firstPosition();
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
    m_sheet->draw(*painter, inFrame(context),
                  [&](int row, int col, const QTextLayout &layout, const QPointF &place) {
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
                  });
}

int ReportLayout::hitTest(const QPointF &point, Qt::HitTestAccuracy accuracy) const {
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

QSizeF ReportLayout::documentSize() const {
    return {m_sheet->width(), m_sheet->height()};
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
        const Cell cell = cellAt(position);
        m_sheet->layOutCell(*block.layout(), cell.row, cell.col);
        return block.layout()->boundingRect().translated(m_sheet->cellPlace(cell.row, cell.col));
    }
    const QTextBlock same = m_sheet->frame().findBlock(toFrame(position));
    const QRectF rect = m_sheet->frame().documentLayout()->blockBoundingRect(same);
    copyLines(same, *block.layout());
    return position < m_rowsEnd || m_rowsEnd == 0 ? rect : rect.translated(0, m_sheet->rowsBelow());
}

ReportDocument::ReportDocument(const QString &path, const Report &report)
    : m_report(report), m_layout(new ReportLayout(this)) {
    requireWritten(report, path);
    m_graph = QImageReader(graphPath(path), "jpg").read();
    setUndoRedoEnabled(false);
    setDocumentLayout(m_layout);
    auto sheet = std::make_unique<ReportSheet>(m_report, m_graph, ReportSheet::Options{});
    setHtml(sheet->frameHtml());
    if (sheet->rows() > 0)
        fillRows(*sheet);
    m_layout->setSheet(std::move(sheet));
}

/// Replaces the frame's table by one with all rows: adding rows to a table takes many times as
/// long.
void ReportDocument::fillRows(const ReportSheet &sheet) {
    const QTextTable &few = *ReportSheet::statisticsIn(*this);
    QTextCursor cursor(this);
    cursor.beginEditBlock();
    cursor.setPosition(few.firstPosition() - 1);
    cursor.setPosition(few.lastPosition() + 1, QTextCursor::KeepAnchor);
    const QTextTableFormat format = few.format();
    cursor.removeSelectedText();
    cursor.insertTable(sheet.rows() + 1, gridColumn::Shown, format);
    const auto fill = [&](const QTextBlockFormat &block, const QTextCharFormat &characters,
                          const QString &text) {
        cursor.setBlockFormat(block);
        cursor.insertText(text, characters);
        cursor.setPosition(cursor.position() + 1);
    };
    const QTextTable &frame = *ReportSheet::statisticsIn(sheet.frame());
    for (int col = 0; col < gridColumn::Shown; ++col) {
        const QTextBlock heading = frame.cellAt(0, col).firstCursorPosition().block();
        fill(heading.blockFormat(), heading.charFormat(), heading.text());
    }
    for (int row = 0; row < sheet.rows(); ++row) {
        for (int col = 0; col < gridColumn::Shown; ++col)
            fill(sheet.columnFormat(col), sheet.rowFormat(row), sheet.cellText(row, col));
    }
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

QVariant ReportDocument::loadResource(int, const QUrl &) {
    return {};
}

} // namespace veltrona
