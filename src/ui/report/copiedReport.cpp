#include "ui/report/copiedReport.h"

#include "core/base/text.h"
#include "ui/report/reportSheet.h"

#include <QBuffer>
#include <QMimeData>
#include <QTextCursor>
#include <QTextDocumentFragment>
#include <QTextDocumentWriter>
#include <QTextTable>

#include <utility>

namespace veltrona {

namespace {

/// Replaces the statistics by a table with all rows: adding rows to a table takes many times as
/// long. `sheet` has the formats.
void fillTable(QTextDocument &document, const ReportSheet &sheet) {
    const QTextTable &few = *ReportSheet::statisticsIn(document);
    QTextCursor cursor(&document);
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

class CopiedReport : public QMimeData {
public:
    CopiedReport(Report report, int anchor, int position)
        : m_report(std::move(report)), m_anchor(anchor), m_position(position) {}

    QStringList formats() const override { return {u"text/plain"_s, u"text/html"_s, odf()}; }

protected:
    QVariant retrieveData(const QString &format, QMetaType) const override {
        if (m_fragment.isEmpty())
            m_fragment = selected();
        if (format == u"text/plain")
            return m_fragment.toPlainText();
        if (format == u"text/html")
            return m_fragment.toHtml();
        QBuffer buffer;
        QTextDocumentWriter writer(&buffer, "ODF");
        return format == odf() && writer.write(m_fragment) ? buffer.data() : QVariant();
    }

private:
    static QString odf() { return u"application/vnd.oasis.opendocument.text"_s; }

    QTextDocumentFragment selected() const {
        const ReportSheet sheet(m_report, {}, {});
        QTextDocument whole;
        whole.setUndoRedoEnabled(false);
        whole.setHtml(htmlOf(m_report, {}));
        if (sheet.rows() > 0)
            fillTable(whole, sheet);
        QTextCursor cursor(&whole);
        cursor.setPosition(m_anchor);
        cursor.setPosition(m_position, QTextCursor::KeepAnchor);
        return cursor.selection();
    }

    Report m_report;
    int m_anchor;
    int m_position;
    mutable QTextDocumentFragment m_fragment;
};

} // namespace

QMimeData *copiedReport(Report report, int anchor, int position) {
    return new CopiedReport(std::move(report), anchor, position);
}

} // namespace veltrona
