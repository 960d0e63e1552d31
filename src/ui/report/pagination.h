// Where a sheet is cut into pages: between its lines, never through a row or a picture.
#pragma once

#include <vector>

namespace veltrona {

class ReportSheet;

/// A piece of the sheet, in pixels from its top.
struct ReportPage {
    double top = 0;
    double bottom = 0;
    /// The headings of the statistics stand above the piece once more.
    bool repeatsHeadings = false;
};

/// The pages for paper of that height. Only what is higher than a whole page is cut.
std::vector<ReportPage> paginate(const ReportSheet &sheet, double height);

/// The height of a page that holds the highest picture and what stays with it: the line above and,
/// where no break is possible, the last row with its headings. 0 if there is no picture.
double highestPicture(const ReportSheet &sheet);

} // namespace veltrona
