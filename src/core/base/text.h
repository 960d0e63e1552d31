// Helpers for texts.
#pragma once

#include <QString>
#include <QStringView>

#include <string_view>

namespace veltrona {

using namespace Qt::StringLiterals;

/// Removes leading and trailing blanks (U+0020). Other white space may be part of a name.
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

/// Compares without regard to the case of A to Z.
bool isSameName(std::string_view a, std::string_view b);

/// The number padded with zeros to `width` digits.
QString padded(int number, int width = 2);

/// "1 click", "30 clicks"
QString counted(const QString &number, QLatin1StringView noun);
inline QString counted(qint64 number, QLatin1StringView noun) {
    return counted(QString::number(number), noun);
}

/// At most the first `length` UTF-16 units of a text, never half of a surrogate pair, and `mark`
/// where something was cut.
QString shortened(const QString &text, qsizetype length, QStringView mark = u"\u2026");

/// Whether one half of a surrogate pair stands there without the other.
inline bool isLoneSurrogate(QStringView text, qsizetype at) {
    const QChar c = text[at];
    if (c.isLowSurrogate())
        return at == 0 || !text[at - 1].isHighSurrogate();
    return c.isHighSurrogate() && (at + 1 == text.size() || !text[at + 1].isLowSurrogate());
}

/// Replaces every control character and line end by a blank.
QString onOneLine(QString text);

} // namespace veltrona
