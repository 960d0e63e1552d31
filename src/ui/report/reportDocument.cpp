#include "ui/report/reportDocument.h"

#include "core/report/reportNames.h"
#include "ui/report/reportLayout.h"

#include <QImageReader>
#include <QTextBlock>
#include <QTextCursor>
#include <QTextTable>

namespace veltrona {

ReportDocument::ReportDocument(const QString &path, ReportPlaces places)
    : m_file(path, std::move(places)), m_graph(QImageReader(graphPath(path), "jpg").read()),
      m_layout(new ReportLayout(this)) {
    setUndoRedoEnabled(false);
    setDocumentLayout(m_layout);
    auto sheet = std::make_unique<ReportSheet>(m_file, m_graph, ReportSheet::Options{});
    setHtml(sheet->frameHtml());
    if (m_file.rows() > 0)
        fillRows(*sheet);
    m_layout->setSheet(std::move(sheet));
}

/// A table of all rows takes the place of the frame's: to add rows to that one would take many
/// times as long.
void ReportDocument::fillRows(const ReportSheet &sheet) {
    const QTextTable &few = *ReportSheet::statisticsIn(*this);
    QTextCursor cursor(this);
    cursor.beginEditBlock();
    cursor.setPosition(few.firstPosition() - 1);
    cursor.setPosition(few.lastPosition() + 1, QTextCursor::KeepAnchor);
    const QTextTableFormat format = few.format();
    cursor.removeSelectedText();
    cursor.insertTable(m_file.rows() + 1, m_file.columns(), format);
    const auto fill = [&](const QTextBlockFormat &block, const QTextCharFormat &characters,
                          const QString &text) {
        cursor.setBlockFormat(block);
        cursor.insertText(text, characters);
        cursor.setPosition(cursor.position() + 1);
    };
    const QTextTable &frame = *ReportSheet::statisticsIn(sheet.frame());
    for (int col = 0; col < m_file.columns(); ++col) {
        const QTextBlock heading = frame.cellAt(0, col).firstCursorPosition().block();
        fill(heading.blockFormat(), heading.charFormat(), heading.text());
    }
    for (int row = 0; row < m_file.rows(); ++row) {
        for (int col = 0; col < m_file.columns(); ++col)
            fill(sheet.columnFormat(col), sheet.cellFormat(row, col), sheet.cellText(row, col));
    }
    cursor.endEditBlock();
}

void ReportDocument::setZoom(double zoom) {
    m_zoom = zoom;
    m_layout->setSheet(std::make_unique<ReportSheet>(m_file, m_graph, ReportSheet::Options{zoom}));
}

ReportSheet ReportDocument::paperSheet() const {
    return {m_file, m_graph, {.forPaper = true}};
}

QVariant ReportDocument::loadResource(int, const QUrl &) {
    return {};
}

} // namespace veltrona
