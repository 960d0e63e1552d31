// Small helpers for texts: names whose case doesn't count, digits in front of which zeros stand,
// and texts that have to be shown on one line.
#pragma once

#include <QString>
#include <QStringView>

#include <string_view>

namespace veltrona {

/// Compares with the case of the letters A to Z not counting.
bool isSameName(std::string_view a, std::string_view b);

/// The number with zeros in front up to `width` digits.
QString padded(int number, int width = 2);

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

/// A blank in the place of every control character and line end.
QString onOneLine(QString text);

} // namespace veltrona
