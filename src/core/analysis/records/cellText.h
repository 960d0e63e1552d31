// Cell texts: the conversions between the texts of the statistics grid and numbers.
#pragma once

#include <QString>
#include <QStringView>

#include <string_view>

namespace veltrona {

/// The longest leading part of the text that reads as a decimal number with "." as the point and an
/// exponent if there is one; 0 without such a part.
double numberOfText(QStringView text);
double numberOfText(std::string_view utf8);
/// Every "%" is removed, then the text is read as a number.
double percentNumberOfText(QStringView text);
double percentNumberOfText(std::string_view utf8);
/// Up to 15 significant digits, "." as the point, no trailing zeros, no zero in front of the point;
/// "1E-05" where the number is too small or too large for that.
QString numberText(double number);
/// Half to even, on the number times a power of ten as a 64-bit float; `decimals` from 0 to 22.
double roundHalfToEven(double number, int decimals);
/// The number that numberOfText(numberText(number)) gives, without the text.
double toFifteenDigits(double number);
/// Adds to a sum that passes through 15 significant digits after every number, as in a cell.
inline void addAsCell(double &sum, double number) {
    // A zero changes nothing: the sum has 15 digits already.
    if (number != 0)
        sum = toFifteenDigits(number + sum);
}
/// Puts a "0" in front of a first ".".
QString withLeadingZero(const QString &text);

} // namespace veltrona
