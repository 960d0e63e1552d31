// Layout of a document that holds a whole report, by means of a sheet of that report, so that the
// document's view offers caret, selection and search as for any document. Positions in the sheet's
// frame and in the document are equal before the rows; after them they differ by the rows that the
// frame leaves out.
#pragma once

#include "ui/report/reportSheet.h"

#include <QAbstractTextDocumentLayout>

#include <memory>
#include <set>

namespace veltrona {

class ReportLayout : public QAbstractTextDocumentLayout {
    Q_OBJECT

public:
    /// The document owns the layout.
    explicit ReportLayout(QTextDocument *document);

    /// Replaces the sheet, which must be one of the document's report.
    void setSheet(std::unique_ptr<ReportSheet> sheet);
    const ReportSheet &sheet() const { return *m_sheet; }

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
    Cell cellAt(int position) const;
    int firstPosition(Cell cell) const;
    int toFrame(int position) const;
    int fromFrame(int position) const;
    PaintContext inFrame(const PaintContext &context) const;
    int hitTestCell(const QPointF &point, Qt::HitTestAccuracy accuracy) const;

    std::unique_ptr<ReportSheet> m_sheet;
    // Positions: where the rows begin and end in the document, and where they end in the frame.
    int m_rowsBegin = 0;
    int m_rowsEnd = 0;
    int m_frameRowsEnd = 0;
    mutable std::set<int> m_laidOut; // positions of the blocks that have lines
};

} // namespace veltrona
