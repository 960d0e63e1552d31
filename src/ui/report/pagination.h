// Divides a sheet into pages: between lines, never within a row or a picture.
#pragma once

#include <QSizeF>

#include <vector>

namespace veltrona {

class ReportSheet;

/// A piece of the sheet, in pixels from its top.
struct ReportPage {
    double top = 0;
    double bottom = 0;
    /// Whether the headings of the statistics are repeated above the piece.
    bool repeatsHeadings = false;
};

/// The pages for paper of this height. Only what is higher than a page is divided.
std::vector<ReportPage> paginate(const ReportSheet &sheet, double height);

/// By how much a sheet is larger on paper whose pages have this body: as wide as that, or smaller
/// if a picture, with what must stay with it, would then be higher.
double scaleFor(const ReportSheet &sheet, const QSizeF &body);

} // namespace veltrona
