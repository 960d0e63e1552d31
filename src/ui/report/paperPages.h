// A report's pages as the preview shows them: centred on a desk, one below the other. Positions on
// the desk are pixels from its top left.
#pragma once

#include "ui/report/pagination.h"
#include "ui/report/paper.h"

#include <functional>
#include <vector>

class QPainter;
class QPalette;

namespace veltrona {

class PaperPages {
public:
    explicit PaperPages(const Paper &paper) : m_paper(paper) {}

    /// Divides a sheet, which must outlive this or the next call. Call it again when rows have
    /// moved. As long as rows aren't measured, the breaks after them are estimates.
    void divide(const ReportSheet &sheet);
    /// Returns whether the paper has another place now.
    bool setViewWidth(double width);

    QSizeF size() const;
    QPointF fromSheet(const QPointF &point) const;
    /// The nearest point that is printed.
    QPointF toSheet(const QPointF &point) const;
    bool isOnSheet(const QPointF &point) const;

    /// Draws a piece of the sheet by a painter with the sheet's coordinates.
    using DrawPiece = std::function<void(const QRectF &piece)>;
    void draw(QPainter &painter, const QRectF &clip, const QPalette &palette,
              const DrawPiece &drawPiece) const;

private:
    QSizeF paperSize() const;
    QRectF paperAt(int page) const;
    /// Where the sheet would begin on the desk if this page began it.
    QPointF originOf(int page) const;
    int pageOnDesk(double y) const;
    int pageOnSheet(double y) const;
    QRectF headings() const;
    void drawPage(QPainter &painter, int number, const QRectF &clip,
                  const DrawPiece &drawPiece) const;

    Paper m_paper;
    const ReportSheet *m_sheet = nullptr;
    double m_scale = 1; // pixels of the printer for one of the sheet
    double m_viewWidth = 0;
    std::vector<ReportPage> m_pages;
};

} // namespace veltrona
