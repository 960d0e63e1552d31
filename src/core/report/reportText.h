// The report as the bytes of its file: windows-1252, every line ending in CR and LF, nothing
// escaped. A character that the code page lacks goes out as a numeric character reference.
#pragma once

#include "core/controls/grid.h"
#include "core/report/reportPlaces.h"
#include "core/report/reportValues.h"

#include <QByteArrayView>

#include <string>
#include <string_view>

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

/// Stands before the text of a coloured cell.
inline constexpr char reportMark[] = R"(<span class="Stil8">)";

/// The grid is read for the details alone; its current cell stays. `places`, if wanted, gets the
/// places of the values.
std::string reportText(const ReportContent &content, const Grid &grid,
                       ReportPlaces *places = nullptr);
std::size_t reportDigest(std::string_view bytes);

/// Appends a text in windows-1252, and to `references` the places of what the code page lacks.
void appendAnsi(std::string &out, QStringView text, std::vector<BytePlace> *references = nullptr);
/// The text of bytes in windows-1252.
QString textOfAnsi(QByteArrayView bytes);

} // namespace veltrona
