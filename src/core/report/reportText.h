// A report as HTML. Its file is windows-1252 with lines that end in CR and LF, and nothing in it is
// escaped; a character that the code page lacks is written as a numeric character reference.
#pragma once

#include "core/report/report.h"

#include <QStringView>

#include <string>

namespace veltrona {

/// The address of the product's home page, in the report's footer.
inline constexpr char homePage[] = "https://veltrona.example/";

/// In pixels: tables and the graph are as wide as that, and texts as high.
inline constexpr int reportTableWidth = 800;
inline constexpr int reportTextSize = 12;
inline constexpr int reportTitleSize = 18;

/// Appends a text in windows-1252.
void appendAnsi(std::string &out, QStringView text);

/// What may differ between a report's file, which has the defaults, and the preview.
struct ReportForm {
    void (*appendValue)(std::string &out, QStringView value) = appendAnsi;
    /// Around the rules of the style sheet.
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
