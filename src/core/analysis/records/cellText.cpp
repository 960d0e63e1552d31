#include "core/analysis/records/cellText.h"

#include "core/base/numberGrammar.h"

#include <algorithm>
#include <bit>
#include <charconv>
#include <cmath>
#include <iterator>
#include <string>

namespace veltrona {
namespace {

/// An overflow is no number, and so gives 0.
template<typename Char>
double leadingNumber(std::basic_string_view<Char> text) {
    const ScannedNumber<Char> scanned = scanNumber(text);
    // Up to 15 digits, whole number and power of ten are exact, so the quotient is the nearest one.
    if (scanned.length > 0 && scanned.exponent.empty() &&
        scanned.whole.size() + scanned.decimals.size() <= 15) {
        qint64 whole = 0;
        for (const auto part : {scanned.whole, scanned.decimals}) {
            for (const Char digit : part)
                whole = whole * 10 + (digit - '0');
        }
        const double magnitude = static_cast<double>(whole) / powersOfTen[scanned.decimals.size()];
        return text.front() == '-' ? -magnitude : magnitude;
    }
    std::string digits;
    for (const Char character : text.substr(0, scanned.length))
        digits += static_cast<char>(character);
    const char *const first = digits.data() + (digits.starts_with('+') ? 1 : 0);
    double number = 0;
    const auto result = std::from_chars(first, digits.data() + digits.size(), number);
    return result.ec == std::errc() ? number : 0;
}

template<typename Char>
double percentNumber(std::basic_string_view<Char> text) {
    std::basic_string<Char> rest(text);
    std::erase(rest, Char('%'));
    return leadingNumber(std::basic_string_view<Char>(rest));
}

std::u16string_view viewOf(QStringView text) {
    return {text.utf16(), static_cast<std::size_t>(text.size())};
}

/// The largest number whose text of 15 digits doesn't overflow when it is read.
constexpr double largest = 1.79769313486231E308;

/// The number as "%.15g" writes it. A sum that overflows stays at the largest number: read back as
/// an overflow it would restart from 0.
std::string_view writeFifteenDigits(double number, char (&buffer)[32]) {
    const auto result =
        std::to_chars(buffer, buffer + sizeof buffer, std::clamp(number, -largest, largest),
                      std::chars_format::general, 15);
    return {buffer, static_cast<std::size_t>(result.ptr - buffer)};
}

/// The text of scaled / 10^decimals, which isn't whole, without zeros at its end and before its
/// point.
QString decimalText(qint64 scaled, int decimals, bool isNegative) {
    char buffer[32];
    char *const end = std::end(buffer);
    char *begin = end;
    for (; scaled % 10 == 0; scaled /= 10)
        --decimals;
    for (; scaled > 0 || decimals > 0; scaled /= 10) {
        *--begin = static_cast<char>('0' + scaled % 10);
        if (--decimals == 0)
            *--begin = '.';
    }
    if (isNegative)
        *--begin = '-';
    return QString::fromLatin1(begin, end - begin);
}

/// For magnitudes from 2^-26 up to 1E15: scaled to a whole number of 15 digits, rounded, and
/// divided back. Scale and whole number are exact, so the quotient is what reading the 15 digits
/// gives.
double scaledToFifteenDigits(double number) {
    const double magnitude = std::abs(number);
    const int exponent = static_cast<int>(std::bit_cast<quint64>(magnitude) >> 52) - 1023;
    int power = 14 - ((exponent * 1233) >> 12); // 1233 / 4096 is nearly log10(2)
    double scaled = magnitude * powersOfTen[power];
    if (scaled >= 1E15)
        scaled = magnitude * powersOfTen[--power];

    constexpr double roundsToWhole = 0x1.8p52;
    double whole = (scaled + roundsToWhole) - roundsToWhole;
    // The product's own error is below half a step of `scaled`, so it matters at a tie only.
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
    // The nearest number to one of at most 15 digits has these digits; below 0.0001 there is an
    // exponent.
    constexpr int decimals = 5;
    const double magnitude = std::abs(number);
    const double scaled = std::nearbyint(magnitude * powersOfTen[decimals]);
    if (scaled >= 10 && scaled < 1E15 && scaled / powersOfTen[decimals] == magnitude)
        return decimalText(static_cast<qint64>(scaled), decimals, number < 0);
    char buffer[32];
    const std::string_view digits = writeFifteenDigits(number, buffer);
    QString text =
        QString::fromLatin1(digits.data(), static_cast<qsizetype>(digits.size())).toUpper();
    const qsizetype sign = text.startsWith(u'-') ? 1 : 0;
    if (QStringView(text).sliced(sign).startsWith(u"0."))
        text.remove(sign, 1);
    return text;
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
