// A report laid out for screen or paper. Qt's rich text lays out the frame: everything except the
// rows of the statistics, which may be very many. The rows share one format, so the sheet computes
// their positions and lays out the texts of those that are drawn. Lengths are pixels from the
// sheet's top left. The sheet refers to the report, which must outlive it.
//
// Laying out every text takes seconds in a report of very many long names. So a row whose texts are
// wrapped has an estimated height until `measure` reaches it.
#pragma once

#include "core/report/report.h"

#include <QAbstractTextDocumentLayout>
#include <QImage>
#include <QTextDocument>
#include <QTextLayout>

#include <array>
#include <functional>
#include <limits>
#include <memory>
#include <vector>

class QPainter;
class QTextTable;

namespace veltrona {

/// A value as a document can hold it: on one line, shortened if very long, without characters that
/// have a special meaning in documents.
QString shownValue(const QString &text);

/// The report with these rows in its statistics as HTML for Qt's rich text.
QString htmlOf(const Report &report, const std::vector<ReportRow> &rows, double zoom = 1);

/// Of the texts of a row on one line each; infinite where that isn't known exactly.
using CellWidths = std::array<float, gridColumn::Shown>;

class ReportSheet {
public:
    /// The width of the tables and the margins.
    static constexpr int pageWidth = 824;

    struct Options {
        double zoom = 1;
        /// Paper gets all pixels of the graph, the screen as many as it shows.
        bool forPaper = false;
    };
    ReportSheet(const Report &report, const QImage &graph, Options options);

    double width() const;
    double height() const { return frameHeight() + m_rowsBelow; }

    /// The report with a few of its rows; all but the rows is drawn from it.
    const QTextDocument &frame() const { return *m_frame; }
    /// The table of the statistics in a document made from `htmlOf`; null if there is none.
    static QTextTable *statisticsIn(const QTextDocument &document);

    int rows() const { return static_cast<int>(m_tops.size()) - 1; }
    double statisticsTop() const { return m_table.top(); }
    double statisticsBottom() const { return m_table.bottom() + m_rowsBelow; }
    double rowTop(int row) const { return m_tops[std::size_t(row)]; }
    double rowsTop() const { return m_tops.front(); }
    double rowsBottom() const { return m_tops.back(); }
    /// By how much the lines after the rows are lower on the sheet than in the frame.
    double rowsBelow() const { return m_rowsBelow; }
    /// Measures the rows in this piece of the sheet. Returns whether rows below have moved; those
    /// above never do.
    bool measure(double top, double bottom);
    void measureAll() { measure(rowsTop(), std::numeric_limits<double>::infinity()); }
    /// The nearest row and column.
    int rowAt(double y) const;
    int columnAt(double x) const;

    QString cellText(int row, int col) const;
    const QTextCharFormat &rowFormat(int row) const;
    QTextBlockFormat columnFormat(int col) const { return m_columns[std::size_t(col)].format; }
    double columnWidth(int col) const { return m_columns[std::size_t(col)].width; }
    /// Top left of a cell's text; lines laid out by layOutCell are relative to it.
    QPointF cellPlace(int row, int col) const;
    void layOutCell(QTextLayout &layout, int row, int col) const;

    /// Draws a cell, given its row, column and lines, and the position of the lines.
    using DrawCell = std::function<void(int, int, const QTextLayout &, const QPointF &)>;
    /// Draws what is within the context's clip, with the context's selections and cursor, which are
    /// positions in the frame.
    void draw(QPainter &painter, const QAbstractTextDocumentLayout::PaintContext &context,
              const DrawCell &drawCell) const;
    /// The same without selections and cursor.
    void draw(QPainter &painter, const QRectF &piece) const;

private:
    struct Column {
        double left = 0; // of the text
        double width = 0;
        QTextBlockFormat format;
    };
    class Frame;

    void makeFrame(const QString &html, const QImage &graph, Options options);
    void readTable(const std::vector<ReportRow> &samples);
    void estimateRows(const std::vector<CellWidths> &widths);
    /// Of a text in place of the cell's own.
    double cellHeight(const QString &text, int row, int col) const;
    double heightOfRow(int row) const;
    double cellLeft(const Column &column) const { return column.left - m_padding - m_border; }
    double cellRight(const Column &column) const {
        return column.left + column.width + m_padding + m_border;
    }
    double frameHeight() const { return m_frame->size().height(); }
    void drawRowLines(QPainter &painter, int row) const;

    const Report &m_report;
    std::unique_ptr<QTextDocument> m_frame;
    std::vector<Column> m_columns;
    QTextCharFormat m_plain;
    QTextCharFormat m_marked;
    QRectF m_table; // in the frame
    double m_border = 0;
    double m_padding = 0;
    double m_frameRowsBottom = 0;
    std::vector<double> m_tops = {0}; // of each row, and the bottom of the last one
    std::vector<bool> m_isMeasured;   // of each row
    double m_rowsBelow = 0;
};

} // namespace veltrona
