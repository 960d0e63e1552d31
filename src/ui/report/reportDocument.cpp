#include "ui/report/reportDocument.h"

#include "core/report/reportNames.h"
#include "ui/report/reportLayout.h"

#include <QImageReader>
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

/// The frame's rows give way to all rows of the file.
void ReportDocument::fillRows(const ReportSheet &sheet) {
    QTextTable &table = *ReportSheet::statisticsIn(*this);
    QTextCursor cursor(this);
    cursor.beginEditBlock();
    table.removeRows(1, table.rows() - 1);
    table.appendRows(m_file.rows());
    cursor.setPosition(table.cellAt(1, 0).firstPosition());
    for (int row = 0; row < m_file.rows(); ++row) {
        for (int col = 0; col < m_file.columns(); ++col) {
            cursor.setBlockFormat(sheet.columnFormat(col));
            cursor.setBlockCharFormat(sheet.cellFormat(row, col));
            cursor.insertText(sheet.cellText(row, col), sheet.cellFormat(row, col));
            cursor.setPosition(cursor.position() + 1);
        }
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
