#include "ui/report/pagination.h"

#include "ui/report/reportSheet.h"

#include <QTextBlock>
#include <QTextFrame>

#include <algorithm>

namespace veltrona {

namespace {

constexpr double borders = 4; // at the end of a table, in pixels

struct Span {
    double top;
    double bottom;
    bool isPicture = false;
};

/// The lines of the frame, in frame coordinates. A picture stays with its caption, the line above.
std::vector<Span> linesOf(const QTextDocument &frame) {
    const QAbstractTextDocumentLayout &layout = *frame.documentLayout();
    std::vector<Span> spans;
    double captionTop = -1;
    for (QTextBlock block = frame.begin(); block.isValid(); block = block.next()) {
        const QRectF rect = layout.blockBoundingRect(block);
        const QString text = block.text();
        const bool isPicture = text.contains(QChar::ObjectReplacementCharacter);
        const bool isCaptioned = isPicture && captionTop >= 0;
        spans.push_back({isCaptioned ? captionTop : rect.top(), rect.bottom(), isPicture});
        if (!isPicture && !text.isEmpty())
            captionTop = rect.top();
    }
    return spans;
}

/// What must stay on one page, from top to bottom. The cells of a row overlap vertically and so are
/// one span; the outer edges of a table stay with the row next to them. The statistics are one span
/// here, breaksOf adds the breaks between their rows.
std::vector<Span> spansOf(const ReportSheet &sheet) {
    const QTextDocument &frame = sheet.frame();
    std::vector<Span> spans = linesOf(frame);
    for (const QTextFrame *table : frame.rootFrame()->childFrames()) {
        const QRectF rect =
            frame.documentLayout()->frameBoundingRect(const_cast<QTextFrame *>(table));
        spans.push_back({rect.top(), rect.top() + borders});
        spans.push_back({rect.bottom() - borders, rect.bottom()});
    }
    if (sheet.rows() > 0) {
        const double bottom = sheet.statisticsBottom() - sheet.rowsBelow();
        std::erase_if(spans, [&](const Span &span) {
            return span.top >= sheet.statisticsTop() && span.bottom <= bottom;
        });
        for (Span &span : spans) {
            span.top += span.top >= bottom ? sheet.rowsBelow() : 0;
            span.bottom += span.bottom > bottom ? sheet.rowsBelow() : 0;
        }
        spans.push_back({sheet.statisticsTop(), sheet.statisticsBottom()});
    }
    std::sort(spans.begin(), spans.end(),
              [](const Span &left, const Span &right) { return left.top < right.top; });
    return spans;
}

/// The middles of the gaps between spans, the boundaries of rows and the end of the sheet.
std::vector<double> breaksOf(const ReportSheet &sheet) {
    std::vector<double> breaks;
    double bottom = 0;
    for (const Span &span : spansOf(sheet)) {
        if (span.top >= bottom && bottom > 0)
            breaks.push_back((bottom + span.top) / 2);
        bottom = std::max(bottom, span.bottom);
    }
    // The headings stay with the first row.
    for (int row = 1; row < sheet.rows(); ++row)
        breaks.push_back(sheet.rowTop(row));
    breaks.push_back(bottom + borders);
    std::sort(breaks.begin(), breaks.end());
    return breaks;
}

/// The height of a page with the highest picture and what must stay with it: the line above and, if
/// no break is possible, the last row with its headings. 0 if there is no picture.
double highestPicture(const ReportSheet &sheet) {
    constexpr double rounding = 0.01; // of the scale
    const std::vector<double> breaks = breaksOf(sheet);
    double highest = 0;
    for (const Span &span : spansOf(sheet)) {
        if (!span.isPicture)
            continue;
        const auto below = std::upper_bound(breaks.begin(), breaks.end(), span.top);
        const double above = below == breaks.begin() ? 0 : *std::prev(below);
        const bool hasRow = sheet.rows() > 0 && above >= sheet.rowsTop();
        const double headings = hasRow ? sheet.rowsTop() - sheet.statisticsTop() : 0;
        highest = std::max(highest, headings + *below - above + rounding);
    }
    return highest;
}

} // namespace

double scaleFor(const ReportSheet &sheet, const QSizeF &body) {
    constexpr double maxShrink = 3; // below that nothing is readable
    const double scale = body.width() / sheet.width();
    const double picture = highestPicture(sheet) * scale;
    return picture > body.height() && picture < maxShrink * body.height()
               ? scale * body.height() / picture
               : scale;
}

std::vector<ReportPage> paginate(const ReportSheet &sheet, double height) {
    constexpr double minHeight = 50; // on a label, the margins may leave nothing
    height = std::max(height, minHeight);
    const std::vector<double> breaks = breaksOf(sheet);
    const double headings = sheet.rows() > 0 ? sheet.rowsTop() - sheet.statisticsTop() : 0;
    std::vector<ReportPage> pages;
    for (double top = 0; top < breaks.back();) {
        ReportPage page{top, top, false};
        page.repeatsHeadings = headings > 0 && headings < height / 2 && top >= sheet.rowsTop() &&
                               top < sheet.rowsBottom();
        const double end = top + height - (page.repeatsHeadings ? headings : 0);
        const auto above = std::upper_bound(breaks.begin(), breaks.end(), end);
        page.bottom = above != breaks.begin() && *(above - 1) > top ? *(above - 1) : end;
        pages.push_back(page);
        top = page.bottom;
    }
    return pages;
}

} // namespace veltrona
