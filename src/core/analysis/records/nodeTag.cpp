#include "core/analysis/records/nodeTag.h"

#include <algorithm>
#include <array>
#include <optional>

namespace veltrona {

namespace {

constexpr std::array<QStringView, 4> conditionColumns = {u"campaign", u"adGroup", u"adWordsTyp",
                                                         u"Keyword"};
constexpr std::array<QStringView, 5> orderColumns = {u"campaign", u"adGroup", u"adWordsTyp",
                                                     u"Keyword", u"kwType"};

bool take(QStringView &rest, QStringView expected) {
    if (!rest.startsWith(expected))
        return false;
    rest = rest.sliced(expected.size());
    return true;
}

/// Takes the text up to the closing apostrophe; a doubled one belongs to the value.
std::optional<QString> takeValue(QStringView &rest) {
    QString value;
    for (qsizetype at = rest.indexOf(u'\''); at >= 0; at = rest.indexOf(u'\'')) {
        value += rest.first(at);
        rest = rest.sliced(at + 1);
        if (!take(rest, u"'"))
            return value;
        value += u'\'';
    }
    return std::nullopt;
}

std::optional<NodeCondition> takeCondition(QStringView &rest) {
    for (const QStringView column : conditionColumns) {
        if (!take(rest, column))
            continue;
        if (!take(rest, u"='"))
            return std::nullopt;
        if (const auto value = takeValue(rest))
            return NodeCondition{column.toString(), *value};
        return std::nullopt;
    }
    return std::nullopt;
}

} // namespace

QString NodeTag::value(QStringView column) const {
    const auto found = std::find_if(conditions.begin(), conditions.end(),
                                    [&](const auto &each) { return each.column == column; });
    return found == conditions.end() ? QString() : found->value;
}

NodeTag readNodeTag(const QString &tag) {
    NodeTag read;
    QStringView rest = tag;
    while (take(rest, u" AND ")) {
        const auto condition = takeCondition(rest);
        if (!condition)
            return {};
        read.conditions.push_back(*condition);
    }
    if (!take(rest, u" ORDER BY ") ||
        std::find(orderColumns.begin(), orderColumns.end(), rest) == orderColumns.end())
        return {};
    read.orderBy = rest.toString();
    return read;
}

QString doubledApostrophes(const QString &value) {
    return QString(value).replace(QLatin1Char('\''), QStringLiteral("''"));
}

} // namespace veltrona
