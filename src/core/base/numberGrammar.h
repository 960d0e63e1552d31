// The grammar of decimal numbers: a sign, digits with "." as the point, an exponent. A cell's
// number is its longest leading part that is one; a value of a report must be one as a whole.
#pragma once

#include <cstddef>
#include <string_view>

namespace veltrona {

/// The powers of ten that are exact as 64-bit floats, by exponent.
inline constexpr double powersOfTen[] = {1E0,  1E1,  1E2,  1E3,  1E4,  1E5,  1E6,  1E7,
                                         1E8,  1E9,  1E10, 1E11, 1E12, 1E13, 1E14, 1E15,
                                         1E16, 1E17, 1E18, 1E19, 1E20, 1E21, 1E22};

/// The longest leading part of a text that reads as a decimal number.
template<typename Char>
struct ScannedNumber {
    using View = std::basic_string_view<Char>;

    std::size_t length = 0; // with the sign; 0 if there is no such part
    View whole;
    View decimals;
    View exponent;       // with its sign
    bool isWhole = true; // neither point nor exponent
};

template<typename Char>
constexpr ScannedNumber<Char> scanNumber(std::basic_string_view<Char> text) {
    const auto afterDigits = [text](std::size_t at) {
        while (at < text.size() && text[at] >= '0' && text[at] <= '9')
            ++at;
        return at;
    };
    const auto afterSign = [text](std::size_t at) {
        return at < text.size() && (text[at] == '+' || text[at] == '-') ? at + 1 : at;
    };
    ScannedNumber<Char> number;
    const std::size_t begin = afterSign(0);
    std::size_t end = afterDigits(begin);
    number.whole = text.substr(begin, end - begin);
    if (end < text.size() && text[end] == '.') {
        const std::size_t fraction = end + 1;
        end = afterDigits(fraction);
        number.decimals = text.substr(fraction, end - fraction);
        number.isWhole = false;
    }
    if (number.whole.empty() && number.decimals.empty())
        return number;
    if (end < text.size() && (text[end] == 'E' || text[end] == 'e')) {
        const std::size_t digits = afterSign(end + 1);
        const std::size_t exponentEnd = afterDigits(digits);
        if (exponentEnd > digits) {
            number.exponent = text.substr(end + 1, exponentEnd - end - 1);
            number.isWhole = false;
            end = exponentEnd;
        }
    }
    number.length = end;
    return number;
}

} // namespace veltrona
