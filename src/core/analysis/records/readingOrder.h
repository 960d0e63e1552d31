// The order in which a reader expects names: by base letters without case and accents, then by
// folded text, then by code point.
#pragma once

#include <QString>

#include <string_view>

namespace veltrona {

/// A text's sort key; keys compare like the texts they were made from. Worth keeping where a text
/// is compared more than once.
class ReadingKey {
public:
    explicit ReadingKey(const QString &text);
    friend bool operator<(const ReadingKey &a, const ReadingKey &b);

private:
    QString m_base;
    QString m_folded;
    QString m_text;
};

/// Whether the stored name `a` comes before `b`, or both are the same; without keys where both are
/// plain ASCII.
bool inReadingOrder(std::string_view a, std::string_view b);

} // namespace veltrona
