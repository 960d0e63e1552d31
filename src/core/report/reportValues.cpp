#include "core/report/reportValues.h"

#include "core/analysis/records/nodeTag.h"
#include "core/base/text.h"

#include <algorithm>
#include <iterator>

namespace veltrona {

namespace {

struct TagDetail {
    QString ReportDetails::*value;
    QStringView column;
};

/// A node of level n fixes the first n of these.
constexpr TagDetail tagDetails[] = {
    {&ReportDetails::campaign, u"campaign"},
    {&ReportDetails::adGroup, u"adGroup"},
    {&ReportDetails::searchType, u"adWordsTyp"},
    {&ReportDetails::keyword, u"Keyword"},
};

} // namespace

ReportDetails reportDetails(const QString &key, const QString &tag, const QString &text) {
    const QString all = QStringLiteral("All");
    ReportDetails details{all, all, all, all, all};
    const int level = key.size() >= 2 && key[1] == u'-' ? key[0].digitValue() : 0;
    if (level < 1 || level > 5)
        return details;
    const NodeTag conditions = readNodeTag(tag);
    for (int i = 0; i < std::min(level, int(std::size(tagDetails))); ++i)
        details.*tagDetails[i].value = conditions.value(tagDetails[i].column);
    if (level == 5)
        details.keywordType = text;
    return details;
}

QChar dateSeparator(const QLocale &locale) {
    const QString format = locale.dateFormat(QLocale::ShortFormat);
    bool quoted = false;
    for (const QChar each : format) {
        if (each == u'\'')
            quoted = !quoted;
        else if (!quoted && (each.isPunct() || each.isSymbol()))
            return each;
    }
    return u'/';
}

QString reportDate(DateValue date, QChar separator) {
    const CalendarDay day = calendarDay(dayNumber(date));
    return padded(day.month) + separator + padded(day.day) + separator + padded(day.year, 4);
}

} // namespace veltrona
