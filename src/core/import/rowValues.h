// The values of a report's attributes: texts without blanks around them, numbers and dates.
#pragma once

#include <QtGlobal>

#include <optional>
#include <string>
#include <string_view>
#include <variant>

namespace veltrona {

/// A whole number is kept exactly, any other as the nearest 64-bit float.
using RowNumber = std::variant<qint64, double>;

/// Sign, digits, point and exponent, nothing else. A whole number beyond 64 bits and a decimal
/// beyond the range of a float are no numbers.
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
