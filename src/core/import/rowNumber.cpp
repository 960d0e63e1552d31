#include "core/import/rowValues.h"

#include "core/base/numberGrammar.h"

#include <QString>

#include <charconv>

namespace veltrona {

std::optional<RowNumber> readNumber(std::string_view text) {
    const ScannedNumber<char> parts = scanNumber(text);
    if (text.empty() || parts.length != text.size())
        return std::nullopt;
    if (text.front() == '+')
        text.remove_prefix(1); // which from_chars doesn't accept
    const char *end = text.data() + text.size();
    qint64 whole = 0;
    if (parts.isWhole && std::from_chars(text.data(), end, whole).ec == std::errc())
        return whole;
    double decimal = 0;
    if (std::from_chars(text.data(), end, decimal).ec != std::errc())
        decimal = QString::fromStdString(std::string(text))
                      .toDouble(); // infinite, or zero if it is too small
    return decimal;
}

} // namespace veltrona
