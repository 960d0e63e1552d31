// A report laid out for screen or paper. Qt's rich text lays out all of it but the rows of the
// statistics, which may be very many: they are lines of one kind, so the sheet knows where each
// stands and lays out the texts of those that are drawn. Lengths are pixels from the sheet's top
// left. The sheet keeps a reference to the report.
#pragma once

#include "core/report/report.h"

#include <QAbstractTextDocumentLayout>
#include <QImage>
#include <QTextDocument>
#include <QTextLayout>

#include <functional>
#include <memory>
#include <vector>

class QPainter;
class QTextTable;

namespace veltrona {

class ReportSheet {
public:
    /// The width that a report is laid out for: its tables and the margin.
    static constexpr int pageWidth = 824;

    struct Options {
        double zoom = 1;
        /// Paper takes the graph in all its pixels, the screen as many as it shows.
        bool forPaper = false;
    };
    ReportSheet(const Report &report, const QImage &graph, Options options);

    double width() const;
    double height() const { return frameHeight() + m_rowsBelow; }

    /// The report with a few of its rows; what stands above and below the rows is drawn from it.
    const QTextDocument &frame() const { return *m_frame; }
    QString frameHtml() const { return m_html; }
    /// The table of the statistics in a document of the frame's HTML; null if there is none.
    static QTextTable *statisticsIn(const QTextDocument &document);

    int rows() const { return static_cast<int>(m_tops.size()) - 1; }
    double statisticsTop() const { return m_table.top(); }
    double statisticsBottom() const { return m_table.bottom() + m_rowsBelow; }
    double rowTop(int row) const { return m_tops[std::size_t(row)]; }
    double rowsTop() const { return m_tops.front(); }
    double rowsBottom() const { return m_tops.back(); }
    /// How much lower what follows the rows stands on the sheet than in the frame.
    double rowsBelow() const { return m_rowsBelow; }
    /// The row at a height and the column at a place from the left; the nearest one.
    int rowAt(double y) const;
    int columnAt(double x) const;

    QString cellText(int row, int col) const;
    const QTextCharFormat &rowFormat(int row) const;
    QTextBlockFormat columnFormat(int col) const { return m_columns[std::size_t(col)].format; }
    /// Where the text of a cell begins, and its lines, which begin there.
    QPointF cellPlace(int row, int col) const;
    void layOutCell(QTextLayout &layout, int row, int col) const;

    /// What the drawing of a cell adds to its text; given the cell's row, column and lines, and the
    /// place where they are drawn.
    using DrawCell = std::function<void(int, int, const QTextLayout &, const QPointF &)>;
    /// Draws what stands within the context's clip, with the context's selections and cursor where
    /// these are positions in the frame.
    void draw(QPainter &painter, const QAbstractTextDocumentLayout::PaintContext &context,
              const DrawCell &drawCell) const;
    /// The same without selections.
    void draw(QPainter &painter, const QRectF &piece) const;

private:
    struct Column {
        double left = 0; // of the text
        double width = 0;
        QTextBlockFormat format;
    };
    class Frame;

    void makeFrame(const QImage &graph, Options options);
    void readTable(const std::vector<ReportRow> &samples);
    void measureRows();
    /// Of a text in the place of a cell.
    double cellHeight(const QString &text, int row, int col) const;
    double rowHeight(int row) const;
    double cellLeft(const Column &column) const { return column.left - m_padding - m_border; }
    double cellRight(const Column &column) const {
        return column.left + column.width + m_padding + m_border;
    }
    double frameHeight() const { return m_frame->size().height(); }
    void drawRowLines(QPainter &painter, int row) const;

    const Report &m_report;
    QString m_html;
    std::unique_ptr<QTextDocument> m_frame;
    std::vector<Column> m_columns;
    QTextCharFormat m_plain;
    QTextCharFormat m_marked;
    QRectF m_table; // in the frame
    double m_border = 0;
    double m_padding = 0;
    double m_frameRowsBottom = 0;
    std::vector<double> m_tops = {0}; // of each row and of what follows the last one
    double m_rowsBelow = 0;
};

} // namespace veltrona
