#include "core/base/numberGrammar.h"
#include "core/import/rowValues.h"

#include <algorithm>
#include <charconv>

namespace veltrona {

namespace {

/// Of a decimal that no float can hold: too small for one rather than too large.
bool isTiny(const ScannedNumber<char> &parts) {
    const std::size_t first = parts.whole.find_first_not_of('0');
    long long magnitude = 0;
    if (first != std::string_view::npos)
        magnitude = static_cast<long long>(parts.whole.size() - first);
    else
        magnitude = -static_cast<long long>(
            std::min(parts.decimals.find_first_not_of('0'), parts.decimals.size()));
    std::string_view digits = parts.exponent;
    const bool isNegative = !digits.empty() && digits.front() == '-';
    if (isNegative || digits.starts_with('+'))
        digits.remove_prefix(1);
    digits.remove_prefix(std::min(digits.find_first_not_of('0'), digits.size()));
    long long exponent = 0;
    if (digits.size() > 17)
        return isNegative;
    std::from_chars(digits.data(), digits.data() + digits.size(), exponent);
    return magnitude + (isNegative ? -exponent : exponent) < 0;
}

} // namespace

std::optional<RowNumber> readNumber(std::string_view text) {
    const ScannedNumber<char> parts = scanNumber(text);
    if (text.empty() || parts.length != text.size())
        return std::nullopt;
    if (text.front() == '+')
        text.remove_prefix(1); // from_chars doesn't know it
    const char *end = text.data() + text.size();
    if (parts.isWhole) {
        qint64 whole = 0;
        if (std::from_chars(text.data(), end, whole).ec != std::errc())
            return std::nullopt;
        return whole;
    }
    double decimal = 0;
    if (std::from_chars(text.data(), end, decimal).ec != std::errc()) {
        if (!isTiny(parts))
            return std::nullopt;
        decimal = 0;
    }
    return decimal;
}

} // namespace veltrona
