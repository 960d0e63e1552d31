// Reads the values of a report's rows.
#pragma once

#include "core/import/reportColumns.h"
#include "core/platform/xml/document.h"

#include <array>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace veltrona {

/// Finds the values of the declared columns among a row's attributes.
class RowReader {
public:
    explicit RowReader(const ReportColumnNames &names);

    /// Reads the current element. The values are valid as long as the document.
    void read(const xml::NodeReader &nodes);
    /// Without blanks around it; empty where the column isn't declared or the row lacks it.
    std::string_view value(int column) const { return m_values[static_cast<std::size_t>(column)]; }

private:
    struct Place {
        std::string name;
        int column;
    };
    int columnOf(std::string_view name) const;

    std::array<std::string, reportColumnCount> m_spellings;
    // The attributes of the previous row by their places: most rows have the same ones.
    std::vector<Place> m_places;
    std::array<std::string_view, reportColumnCount> m_values;
};

/// A whole number is kept exactly, any other as the nearest 64-bit float.
using RowNumber = std::variant<qint64, double>;

/// Sign, digits, point and exponent, nothing else. A whole number of more than 64 bits becomes the
/// nearest float; a number beyond the range of a float becomes an infinity.
std::optional<RowNumber> readNumber(std::string_view text);

struct RowDate {
    std::string text;  // as it stands in the table: "2007-05-14" or "2007-05-14 13:05:09"
    std::string month; // "2007 05"
    std::string week;  // "2007 20"; never carried into the next year
};

/// One of six forms of a day, from 1752-09-14 on, each with an optional time of day:
/// 2007-05-14, 2007/05/14, 5/14/2007, 14.05.2007, May 14, 2007 and 14 May 2007.
std::optional<RowDate> readDate(std::string_view text);

} // namespace veltrona
