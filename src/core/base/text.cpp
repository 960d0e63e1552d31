#include "core/base/text.h"

#include <algorithm>
#include <utility>

namespace veltrona {

bool isSameName(std::string_view a, std::string_view b) {
    const auto lower = [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c; };
    return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                      [&](char x, char y) { return lower(x) == lower(y); });
}

QString padded(int number, int width) {
    return u"%1"_s.arg(number, width, 10, QChar(u'0'));
}

QString counted(const QString &number, QLatin1StringView noun) {
    return number + u' ' + noun + (number == u"1" ? QString() : u"s"_s);
}

QString shortened(const QString &text, qsizetype length, QStringView mark) {
    if (text.size() <= length)
        return text;
    const bool isPairCut = length > 0 && text.at(length - 1).isHighSurrogate();
    return text.left(length - isPairCut).append(mark);
}

QString onOneLine(QString text) {
    const auto isReplaced = [](QChar c) {
        return c < u' ' || (c >= QChar(0x7F) && c < QChar(0xA0)) || c == QChar::LineSeparator ||
               c == QChar::ParagraphSeparator;
    };
    // A text without any isn't copied.
    if (std::ranges::any_of(std::as_const(text), isReplaced))
        std::ranges::replace_if(text, isReplaced, u' ');
    return text;
}

} // namespace veltrona
