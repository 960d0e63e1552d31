#include "core/import/reportValues.h"

#include <algorithm>
#include <charconv>

namespace veltrona {

namespace {

bool isDigit(char c) {
    return c >= '0' && c <= '9';
}

std::size_t skipDigits(std::string_view text, std::size_t at) {
    while (at < text.size() && isDigit(text[at]))
        ++at;
    return at;
}

/// The parts of a number without its sign.
struct Parts {
    std::string_view whole;
    std::string_view decimals;
    std::string_view exponent; // with its sign
    bool isWhole = true;       // neither point nor exponent
};

std::optional<Parts> split(std::string_view text) {
    Parts parts;
    std::size_t at = skipDigits(text, 0);
    parts.whole = text.substr(0, at);
    if (at < text.size() && text[at] == '.') {
        const std::size_t end = skipDigits(text, at + 1);
        parts.decimals = text.substr(at + 1, end - at - 1);
        parts.isWhole = false;
        at = end;
    }
    if (parts.whole.empty() && parts.decimals.empty())
        return std::nullopt;
    if (at < text.size() && (text[at] == 'e' || text[at] == 'E')) {
        const std::size_t start = at + 1;
        const bool isSigned = start < text.size() && (text[start] == '+' || text[start] == '-');
        const std::size_t end = skipDigits(text, start + isSigned);
        if (end == start + isSigned)
            return std::nullopt;
        parts.exponent = text.substr(start, end - start);
        parts.isWhole = false;
        at = end;
    }
    if (at != text.size())
        return std::nullopt;
    return parts;
}

/// Of a decimal that no float can hold: too small for one rather than too large.
bool isTiny(const Parts &parts) {
    const std::size_t first = parts.whole.find_first_not_of('0');
    long long magnitude = 0;
    if (first != std::string_view::npos)
        magnitude = static_cast<long long>(parts.whole.size() - first);
    else
        magnitude = -static_cast<long long>(
            std::min(parts.decimals.find_first_not_of('0'), parts.decimals.size()));
    std::string_view digits = parts.exponent;
    const bool isNegative = !digits.empty() && digits.front() == '-';
    if (!digits.empty() && !isDigit(digits.front()))
        digits.remove_prefix(1);
    digits.remove_prefix(std::min(digits.find_first_not_of('0'), digits.size()));
    long long exponent = 0;
    if (digits.size() > 17)
        return isNegative;
    std::from_chars(digits.data(), digits.data() + digits.size(), exponent);
    return magnitude + (isNegative ? -exponent : exponent) < 0;
}

} // namespace

std::optional<ReportNumber> readNumber(std::string_view text) {
    const bool isSigned = !text.empty() && (text.front() == '+' || text.front() == '-');
    const std::optional<Parts> parts = split(text.substr(isSigned));
    if (!parts)
        return std::nullopt;
    if (text.front() == '+')
        text.remove_prefix(1); // from_chars doesn't know it
    const char *end = text.data() + text.size();
    if (parts->isWhole) {
        qint64 whole = 0;
        if (std::from_chars(text.data(), end, whole).ec != std::errc())
            return std::nullopt;
        return whole;
    }
    double decimal = 0;
    if (std::from_chars(text.data(), end, decimal).ec != std::errc()) {
        if (!isTiny(*parts))
            return std::nullopt;
        decimal = 0;
    }
    return decimal;
}

} // namespace veltrona
