// A report as a document that can be shown and printed. It reads the report's file and picture and
// nothing else: no other file, no network, no script. Values are plain text, whatever they look
// like. The document refers to the report, which must outlive it.
//
// A row of the statistics is one block, its cells separated by U+2028: a table of Qt's with as many
// cells takes ten times as long to make. Text and positions are the same as with a table.
#pragma once

#include "core/report/report.h"
#include "ui/report/paperPages.h"
#include "ui/report/reportSheet.h"

#include <QAbstractTextDocumentLayout>
#include <QImage>
#include <QTextDocument>

#include <memory>
#include <set>

class QMimeData;

namespace veltrona {

/// Lays out a document that holds a whole report, by means of a sheet of that report, so that the
/// document's view offers caret, selection and search as for any document. Positions in the sheet's
/// frame and in the document are equal before the rows; after them they differ by the rows that the
/// frame leaves out. The document's coordinates are those of the desk that its pages lie on.
class ReportLayout : public QAbstractTextDocumentLayout {
    Q_OBJECT

public:
    /// The document owns the layout.
    ReportLayout(QTextDocument *document, const Paper &paper);

    /// Replaces the sheet, which must be one of the document's report.
    void setSheet(std::unique_ptr<ReportSheet> sheet);
    const ReportSheet &sheet() const { return *m_sheet; }
    void setViewWidth(double width);
    /// Measures the rows in this piece of the document. Returns whether anything below has moved.
    bool measure(double top, double bottom);
    /// Where the caret goes from a position by this many pixels and at least a line up (if
    /// negative) or down; -1 where Qt knows that itself, outside of the rows.
    int movedBy(int position, double pixels) const;

    void draw(QPainter *painter, const PaintContext &context) override;
    int hitTest(const QPointF &point, Qt::HitTestAccuracy accuracy) const override;
    int pageCount() const override { return 1; }
    QSizeF documentSize() const override;
    QRectF frameBoundingRect(QTextFrame *frame) const override;
    /// Also lays out the block's own lines, by which Qt places the caret.
    QRectF blockBoundingRect(const QTextBlock &block) const override;

protected:
    void documentChanged(int, int, int) override {}

private:
    struct Cell {
        int row = 0;
        int col = 0;
    };
    bool isAmongRows(int position) const;
    QTextBlock blockOf(int row) const;
    Cell cellAt(int position) const;
    int firstPosition(Cell cell) const;
    void layOutRow(const QTextBlock &block, int row) const;
    int toFrame(int position) const;
    int fromFrame(int position) const;
    PaintContext inFrame(const PaintContext &context) const;
    /// At a point of the sheet.
    int hitTestSheet(const QPointF &point, Qt::HitTestAccuracy accuracy) const;
    int hitTestCell(const QPointF &point, Qt::HitTestAccuracy accuracy) const;
    void redraw();

    std::unique_ptr<ReportSheet> m_sheet;
    PaperPages m_pages;
    // Positions: where the rows begin and end in the document, and where they end in the frame.
    int m_firstRow = 0; // number of its block
    int m_rowsBegin = 0;
    int m_rowsEnd = 0;
    int m_frameRowsEnd = 0;
    mutable std::set<int> m_laidOut; // positions of the blocks that have lines
};

class ReportDocument : public QTextDocument {
    Q_OBJECT

public:
    /// Throws Failure unless the file holds the report.
    ReportDocument(const QString &path, const Report &report, const Paper &paper = a4Paper());

    double zoom() const { return m_zoom; }
    /// Lays the report out again.
    void setZoom(double zoom);

    /// The report laid out for paper, at zoom 1; it must not outlive the document.
    ReportSheet paperSheet() const;

    /// What is selected, to be copied; the statistics become a table. Independent of the document.
    QMimeData *copied(const QTextCursor &selection) const;

protected:
    QVariant loadResource(int type, const QUrl &name) override;

private:
    void fillRows(const ReportSheet &sheet);

    const Report &m_report;
    QImage m_graph; // null if there is none
    double m_zoom = 1;
    ReportLayout *m_layout; // owned by the document
};

} // namespace veltrona
