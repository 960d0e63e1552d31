#include "ui/report/reportDocument.h"

#include "core/report/reportWriter.h"
#include "ui/report/reportLayout.h"

#include <QImageReader>
#include <QTextBlock>
#include <QTextCursor>
#include <QTextTable>

namespace veltrona {

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
