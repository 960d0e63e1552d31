// Removes leading and trailing blanks (U+0020). Other white space may be part of a name.
#pragma once

#include <QStringView>

#include <string_view>

namespace veltrona {

constexpr std::string_view withoutBlanks(std::string_view text) {
    while (!text.empty() && text.front() == ' ')
        text.remove_prefix(1);
    while (!text.empty() && text.back() == ' ')
        text.remove_suffix(1);
    return text;
}

constexpr QStringView withoutBlanks(QStringView text) {
    while (!text.isEmpty() && text.front() == u' ')
        text = text.mid(1);
    while (!text.isEmpty() && text.back() == u' ')
        text.chop(1);
    return text;
}

} // namespace veltrona
