// The report as the bytes of its file: windows-1252, every line ending in CR and LF, nothing
// escaped. A character that the code page lacks goes out as a numeric character reference.
#pragma once

#include "core/controls/grid.h"
#include "core/report/reportValues.h"

#include <string>

namespace veltrona {

/// The address of the product's home page, in the report's footer.
inline constexpr char homePage[] = "https://veltrona.example/";

/// The check boxes of the export dialog, in the order of their indices.
struct ReportOptions {
    bool graph = true;
    bool details = true;
    bool dateAndTime = true;
    bool footer = true;
};

struct ReportContent {
    ReportDetails details;
    QString now;
    QString start;
    QString end;
    QString metric;
    ReportOptions options;
    bool doColor = false; // marks the cells that are red in the grid
};

/// The grid is read for the details alone; its current cell stays.
std::string reportText(const ReportContent &content, const Grid &grid);

/// Appends a text in windows-1252.
void appendAnsi(std::string &out, QStringView text);
/// The text of bytes in windows-1252.
QString textOfAnsi(const QByteArray &bytes);

} // namespace veltrona
