#include "ui/report/paperPages.h"

#include "ui/report/reportSheet.h"

#include <QPainter>
#include <QPalette>

#include <algorithm>
#include <cmath>

namespace veltrona {

namespace {

constexpr double gap = 16; // around the pages, in pixels

} // namespace

void PaperPages::divide(const ReportSheet &sheet) {
    m_sheet = &sheet;
    m_scale = scaleFor(sheet, m_paper.body());
    m_pages = paginate(sheet, m_paper.body().height() / m_scale);
}

bool PaperPages::setViewWidth(double width) {
    const QPointF before = paperAt(0).topLeft();
    m_viewWidth = width;
    return paperAt(0).topLeft() != before;
}

QSizeF PaperPages::paperSize() const {
    return (m_paper.size / m_scale).toSize();
}

QSizeF PaperPages::size() const {
    const QSizeF paper = paperSize();
    return {std::max(m_viewWidth, paper.width() + 2 * gap),
            static_cast<double>(m_pages.size()) * (paper.height() + gap) + gap};
}

/// Whole pixels keep letters and lines sharp.
QRectF PaperPages::paperAt(int page) const {
    const QSizeF paper = paperSize();
    return {{std::round((size().width() - paper.width()) / 2), gap + page * (paper.height() + gap)},
            paper};
}

QRectF PaperPages::headings() const {
    const double top = m_sheet->statisticsTop();
    return {0, top, m_sheet->width(), m_sheet->rowsTop() - top};
}

QPointF PaperPages::originOf(int page) const {
    const ReportPage &piece = m_pages[std::size_t(page)];
    const double repeated = piece.repeatsHeadings ? headings().height() : 0;
    return paperAt(page).topLeft() +
           (m_paper.printed.topLeft() / m_scale + QPointF(0, repeated - piece.top)).toPoint();
}

int PaperPages::pageOnDesk(double y) const {
    const double page = (y - gap) / (paperSize().height() + gap);
    return static_cast<int>(std::clamp(page, 0., static_cast<double>(m_pages.size()) - 1));
}

int PaperPages::pageOnSheet(double y) const {
    const auto next = std::ranges::upper_bound(m_pages, y, {}, &ReportPage::top);
    return std::max(0, static_cast<int>(next - m_pages.begin()) - 1);
}

QPointF PaperPages::fromSheet(const QPointF &point) const {
    return point + originOf(pageOnSheet(point.y()));
}

QPointF PaperPages::toSheet(const QPointF &point) const {
    const int number = pageOnDesk(point.y());
    const ReportPage &page = m_pages[std::size_t(number)];
    const QPointF onSheet = point - originOf(number);
    const double last = std::nextafter(page.bottom, page.top); // the bottom is the next page's
    return {onSheet.x(), std::clamp(onSheet.y(), page.top, std::max(page.top, last))};
}

bool PaperPages::isOnSheet(const QPointF &point) const {
    return QLineF(fromSheet(toSheet(point)), point).length() < 1;
}

void PaperPages::draw(QPainter &painter, const QRectF &clip, const QPalette &palette,
                      const DrawPiece &drawPiece) const {
    painter.fillRect(clip, palette.color(QPalette::Mid));
    for (int page = pageOnDesk(clip.top()); page <= pageOnDesk(clip.bottom()); ++page) {
        const QRectF paper = paperAt(page);
        painter.fillRect(paper.adjusted(-1, -1, 1, 1), palette.color(QPalette::Dark));
        painter.fillRect(paper, palette.color(QPalette::Base));
        painter.setPen(palette.color(QPalette::Text));
        drawPage(painter, page, clip, drawPiece);
    }
}

void PaperPages::drawPage(QPainter &painter, int number, const QRectF &clip,
                          const DrawPiece &drawPiece) const {
    const ReportPage &page = m_pages[std::size_t(number)];
    const QPointF origin = originOf(number);
    const auto drawAt = [&](const QPointF &place, const QRectF &piece) {
        const QRectF shown = piece & clip.translated(-place);
        if (shown.isEmpty())
            return;
        painter.save();
        painter.translate(place);
        painter.setClipRect(piece, Qt::IntersectClip);
        drawPiece(shown);
        painter.restore();
    };
    if (page.repeatsHeadings)
        drawAt(origin + QPointF(0, page.top - headings().bottom()).toPoint(), headings());
    drawAt(origin, {0, page.top, m_sheet->width(), page.bottom - page.top});

    painter.save();
    painter.translate(paperAt(number).topLeft());
    painter.scale(1 / m_scale, 1 / m_scale);
    QFont font = footFont();
    font.setPixelSize(qRound(m_paper.footFontSize));
    painter.setFont(font);
    painter.drawText(m_paper.printed, Qt::AlignHCenter | Qt::AlignBottom,
                     footText(number + 1, static_cast<int>(m_pages.size())));
    painter.restore();
}

} // namespace veltrona
