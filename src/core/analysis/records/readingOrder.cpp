#include "core/analysis/records/readingOrder.h"

#include "core/base/storedText.h"

#include <QList>

#include <algorithm>

namespace veltrona {

namespace {

bool isAscii(QStringView text) {
    return std::all_of(text.begin(), text.end(), [](QChar c) { return c.unicode() < 0x80; });
}

/// Removes combining marks; vowel signs have no combining class and stay.
QString withoutAccents(const QString &decomposed) {
    QString bare;
    bare.reserve(decomposed.size());
    for (const uint codePoint : decomposed.toUcs4())
        if (QChar::combiningClass(codePoint) == 0)
            bare += QChar::fromUcs4(codePoint);
    return bare;
}

/// Orders UTF-16 units by code point: surrogates belong to the highest ones.
ushort codePointRank(QChar c) {
    if (c.isSurrogate())
        return static_cast<ushort>(c.unicode() + 0x2000);
    return c.unicode() >= 0xE000 ? static_cast<ushort>(c.unicode() - 0x800) : c.unicode();
}

int compareCodePoints(QStringView a, QStringView b) {
    const auto [left, right] = std::mismatch(a.begin(), a.end(), b.begin(), b.end());
    if (left == a.end() || right == b.end())
        return int(left != a.end()) - int(right != b.end());
    return int(codePointRank(*left)) - int(codePointRank(*right));
}

} // namespace

ReadingKey::ReadingKey(const QString &text) : m_text(text) {
    if (isAscii(text)) {
        m_folded = text.toLower();
        m_base = m_folded;
        return;
    }
    m_folded = text.toCaseFolded();
    // By way of upper case: it alone turns a sharp s, small or capital, into two letters.
    m_base = withoutAccents(text.normalized(QString::NormalizationForm_KD))
                 .toLower()
                 .toUpper()
                 .toCaseFolded();
}

bool operator<(const ReadingKey &a, const ReadingKey &b) {
    if (const int order = compareCodePoints(a.m_base, b.m_base))
        return order < 0;
    if (const int order = compareCodePoints(a.m_folded, b.m_folded))
        return order < 0;
    return compareCodePoints(a.m_text, b.m_text) < 0;
}

bool inReadingOrder(std::string_view a, std::string_view b) {
    const auto isAsciiByte = [](char c) { return static_cast<signed char>(c) >= 0; };
    if (!std::ranges::all_of(a, isAsciiByte) || !std::ranges::all_of(b, isAsciiByte))
        return !(ReadingKey(textOf(b)) < ReadingKey(textOf(a)));
    const auto size = [](std::string_view text) { return static_cast<qsizetype>(text.size()); };
    const int order = QLatin1StringView(a.data(), size(a))
                          .compare(QLatin1StringView(b.data(), size(b)), Qt::CaseInsensitive);
    return order < 0 || (order == 0 && a <= b);
}

} // namespace veltrona
