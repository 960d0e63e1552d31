// Divides a sheet into pages: between lines, never within a row or a picture.
#pragma once

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

/// The height of a page with the highest picture and what must stay with it: the line above and, if
/// no break is possible, the last row with its headings. 0 if there is no picture.
double highestPicture(const ReportSheet &sheet);

} // namespace veltrona
