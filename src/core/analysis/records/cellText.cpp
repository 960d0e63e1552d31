#include "core/analysis/records/cellText.h"

#include "core/base/numberGrammar.h"

#include <QVarLengthArray>

#include <algorithm>
#include <bit>
#include <charconv>
#include <cmath>

namespace veltrona {
namespace {

template<typename Char>
using View = std::basic_string_view<Char>;

/// `text` holds a decimal number and nothing else. An overflow is no number, and so gives 0.
double readNumber(std::string_view text) {
    if (text.front() == '+')
        text.remove_prefix(1);
    double number = 0;
    const auto result = std::from_chars(text.data(), text.data() + text.size(), number);
    return result.ec == std::errc() ? number : 0;
}

template<typename Char>
double leadingNumber(View<Char> text) {
    const std::size_t length = scanNumber(text).length;
    if (length == 0)
        return 0;
    if constexpr (sizeof(Char) == 1) {
        return readNumber(text.substr(0, length));
    } else {
        QVarLengthArray<char, 64> ascii(static_cast<qsizetype>(length));
        for (std::size_t i = 0; i < length; ++i)
            ascii[static_cast<qsizetype>(i)] = static_cast<char>(text[i]);
        return readNumber({ascii.constData(), length});
    }
}

template<typename Char>
double percentNumber(View<Char> text) {
    if (text.find(Char('%')) == View<Char>::npos)
        return leadingNumber(text);
    QVarLengthArray<Char, 64> rest;
    for (const Char character : text) {
        if (character != Char('%'))
            rest.append(character);
    }
    return leadingNumber(View<Char>(rest.constData(), static_cast<std::size_t>(rest.size())));
}

View<char16_t> viewOf(QStringView text) {
    return {text.utf16(), static_cast<std::size_t>(text.size())};
}

/// The largest number whose text of 15 digits is no overflow when it is read.
constexpr double largest = 1.79769313486231E308;

/// The number as "%.15g" writes it. A sum that grows beyond all numbers stays at the largest: read
/// as an overflow it would go on from 0.
std::string_view writeFifteenDigits(double number, char (&buffer)[32]) {
    const auto result =
        std::to_chars(buffer, buffer + sizeof buffer, std::clamp(number, -largest, largest),
                      std::chars_format::general, 15);
    return {buffer, static_cast<std::size_t>(result.ptr - buffer)};
}

/// For magnitudes from 2^-26 up to 1E15: scaled to a whole number of 15 digits, rounded, and
/// divided back. Both the scale and the whole number are exact, so that the quotient is the very
/// number that reading the 15 digits gives.
double scaledToFifteenDigits(double number) {
    const double magnitude = std::abs(number);
    const int exponent = static_cast<int>(std::bit_cast<quint64>(magnitude) >> 52) - 1023;
    int power = 14 - ((exponent * 1233) >> 12); // 1233 / 4096 stands for the logarithm of 2
    double scaled = magnitude * powersOfTen[power];
    if (scaled >= 1E15)
        scaled = magnitude * powersOfTen[--power];

    constexpr double roundsToWhole = 0x1.8p52;
    double whole = (scaled + roundsToWhole) - roundsToWhole;
    // The product's own error is below half a step of `scaled`: it matters where a tie is met
    // alone.
    if (std::abs(scaled - whole) == 0.5) {
        const double error = std::fma(magnitude, powersOfTen[power], -scaled);
        if (error != 0)
            whole = scaled + std::copysign(0.5, error);
    }
    return std::copysign(whole / powersOfTen[power], number);
}

} // namespace

double numberOfText(QStringView text) {
    return leadingNumber(viewOf(text));
}

double numberOfText(std::string_view utf8) {
    return leadingNumber(utf8);
}

double percentNumberOfText(QStringView text) {
    return percentNumber(viewOf(text));
}

double percentNumberOfText(std::string_view utf8) {
    return percentNumber(utf8);
}

QString numberText(double number) {
    if (std::abs(number) < 1E15 && static_cast<double>(static_cast<qint64>(number)) == number)
        return QString::number(static_cast<qint64>(number));
    char buffer[32];
    std::string_view digits = writeFifteenDigits(number, buffer);
    QVarLengthArray<QChar, 32> text;
    if (digits.front() == '-') {
        text.append(u'-');
        digits.remove_prefix(1);
    }
    if (digits.starts_with("0."))
        digits.remove_prefix(1);
    for (const char character : digits)
        text.append(
            QLatin1Char(character >= 'a' ? static_cast<char>(character - 'a' + 'A') : character));
    return QString(text.constData(), text.size());
}

double roundHalfToEven(double number, int decimals) {
    const double scaled = number * powersOfTen[decimals];
    return std::isfinite(scaled) ? std::nearbyint(scaled) / powersOfTen[decimals] : number;
}

double toFifteenDigits(double number) {
    const double magnitude = std::abs(number);
    if (magnitude < 1E15) {
        if (static_cast<double>(static_cast<qint64>(number)) == number)
            return number + 0.0; // a negative zero has the text of zero
        if (magnitude >= 0x1p-26)
            return scaledToFifteenDigits(number);
    }
    char buffer[32];
    return leadingNumber(writeFifteenDigits(number, buffer));
}

QString withLeadingZero(const QString &text) {
    return text.startsWith(u'.') ? u'0' + text : text;
}

} // namespace veltrona
