// A report as HTML. The file is windows-1252 with CR LF line ends and escapes nothing; a character
// that the code page lacks becomes a numeric character reference.
#pragma once

#include "core/report/report.h"

#include <QStringView>

#include <string>

namespace veltrona {

/// The address of the product's home page, in the report's footer.
inline constexpr char homePage[] = "https://veltrona.example/";

/// Width of the tables and font sizes, in pixels.
inline constexpr int reportTableWidth = 800;
inline constexpr int reportTextSize = 12;
inline constexpr int reportTitleSize = 18;

/// Appends a text in windows-1252.
void appendAnsi(std::string &out, QStringView text);

/// What differs between the file and the preview. The defaults are those of the file.
struct ReportForm {
    void (*appendValue)(std::string &out, QStringView value) = appendAnsi;
    /// Before and after the rules of the style sheet.
    std::string styleBegin = "<!--";
    std::string styleEnd = "-->";
    double zoom = 1; // of texts and tables
};

/// The report with these rows in its statistics.
std::string reportText(const Report &report, const std::vector<ReportRow> &rows,
                       const ReportForm &form = {});
/// The content of the report's file.
inline std::string reportText(const Report &report) {
    return reportText(report, report.rows);
}

} // namespace veltrona
