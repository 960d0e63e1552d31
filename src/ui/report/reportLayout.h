// Shows a sheet as the layout of a document that holds the same report with all its rows, so that
// the document's view has caret, selection and search in it as in any other document. Positions in
// the frame of the sheet and in the document are the same up to the rows; behind them they differ
// by what the frame leaves out.
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

    /// Shows a sheet of the document's report from now on.
    void setSheet(std::unique_ptr<ReportSheet> sheet);
    const ReportSheet &sheet() const { return *m_sheet; }

    void draw(QPainter *painter, const PaintContext &context) override;
    int hitTest(const QPointF &point, Qt::HitTestAccuracy accuracy) const override;
    int pageCount() const override { return 1; }
    QSizeF documentSize() const override;
    QRectF frameBoundingRect(QTextFrame *frame) const override;
    /// Lays out the block's own lines too, where the caret is looked for.
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
    // The positions that the rows lie between: in the document, and their end in the frame.
    int m_rowsBegin = 0;
    int m_rowsEnd = 0;
    int m_frameRowsEnd = 0;
    mutable std::set<int> m_laidOut; // the blocks that have lines of their own, by position
};

} // namespace veltrona
