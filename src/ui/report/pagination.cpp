#include "ui/report/pagination.h"

#include "ui/report/reportDocument.h"

#include <QAbstractTextDocumentLayout>
#include <QTextBlock>

#include <algorithm>

namespace veltrona {

namespace {

constexpr double borders = 4; // of a table's end, in pixels

struct Span {
    double top;
    double bottom;
    bool isPicture = false;
};

/// What must stay on one page. The cells of a row overlap in height, so they make one span.
std::vector<Span> spansOf(const ReportDocument &document) {
    const QAbstractTextDocumentLayout &layout = *document.documentLayout();
    std::vector<Span> spans;
    double captionTop = -1;
    for (QTextBlock block = document.begin(); block.isValid(); block = block.next()) {
        const QRectF rect = layout.blockBoundingRect(block);
        Span span{rect.top(), rect.bottom()};
        const QString text = block.text();
        if (text.contains(QChar::ObjectReplacementCharacter)) {
            span.isPicture = true;
            // A picture stays with the line above that says what it shows.
            if (captionTop >= 0)
                span.top = captionTop;
        } else if (!text.isEmpty()) {
            captionTop = span.top;
        }
        spans.push_back(span);
    }
    std::sort(spans.begin(), spans.end(),
              [](const Span &left, const Span &right) { return left.top < right.top; });
    return spans;
}

/// The middles of the gaps between the spans, and the document's end.
std::vector<double> breaksOf(const ReportDocument &document) {
    const ReportDocument::Statistics statistics = document.statistics();
    std::vector<double> breaks;
    double bottom = 0;
    for (const Span &span : spansOf(document)) {
        const double gap = (bottom + span.top) / 2;
        // The headings stay with the first row below them.
        const bool isBelowHeadings =
            gap > statistics.top + borders && gap <= statistics.headingsEnd + 1;
        if (span.top > bottom && bottom > 0 && !isBelowHeadings)
            breaks.push_back(gap);
        bottom = std::max(bottom, span.bottom);
    }
    breaks.push_back(bottom + borders);
    return breaks;
}

} // namespace

double highestPicture(const ReportDocument &document) {
    double highest = 0;
    for (const Span &span : spansOf(document)) {
        if (span.isPicture)
            highest = std::max(highest, span.bottom - span.top);
    }
    return highest;
}

std::vector<ReportPage> paginate(const ReportDocument &document, double height) {
    const std::vector<double> breaks = breaksOf(document);
    const ReportDocument::Statistics statistics = document.statistics();
    const double headings = statistics.headingsEnd - statistics.top;
    std::vector<ReportPage> pages;
    for (double top = 0; top < breaks.back();) {
        ReportPage page{top, top, false};
        page.repeatsHeadings = headings < height / 2 && top >= statistics.headingsEnd &&
                               top < statistics.bottom - borders;
        const double end = top + height - (page.repeatsHeadings ? headings : 0);
        const auto above = std::upper_bound(breaks.begin(), breaks.end(), end);
        page.bottom = above != breaks.begin() && *(above - 1) > top ? *(above - 1) : end;
        pages.push_back(page);
        top = page.bottom;
    }
    return pages;
}

} // namespace veltrona
