// Reads numbers and dates from the values of a report, which have no blanks around them.
#pragma once

#include <QtGlobal>

#include <optional>
#include <string>
#include <string_view>
#include <variant>

namespace veltrona {

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
