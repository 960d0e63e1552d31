#include "core/analysis/tree/coverage.h"

#include "core/analysis/records/nodeRecords.h"
#include "core/analysis/records/recordWalk.h"
#include "core/base/dateTexts.h"
#include "core/base/text.h"

#include <QLocale>
#include <QStringList>

#include <algorithm>

namespace veltrona {

namespace {

constexpr std::size_t maxGaps = 3; // that are named

/// The days between the first and the last that have no record.
std::vector<DateRange> gapsOf(const sqlite::Connection &connection, const DateRange &dates) {
    // One seek for each day.
    sqlite::Statement next =
        connection.prepare("SELECT min(GoogleDate) FROM tblGoogleDays WHERE GoogleDate > ?");
    std::vector<DateRange> gaps;
    const int last = dayNumber(dates.end);
    for (int day = dayNumber(dates.start); day < last;) {
        next.bind(1, dateTextsOf({static_cast<DateValue>(day), static_cast<DateValue>(day)}).last);
        const auto found = next.step() ? dateOfIsoText(next.utf8(0)) : std::optional<DateValue>();
        if (!found)
            break;
        const int nextDay = dayNumber(*found);
        if (nextDay > day + 1)
            gaps.push_back({static_cast<DateValue>(day + 1), static_cast<DateValue>(nextDay - 1)});
        day = nextDay;
        next.reset();
    }
    return gaps;
}

QString gapsText(const std::vector<DateRange> &gaps, int year) {
    QStringList texts;
    for (const DateRange &gap : gaps) {
        if (static_cast<std::size_t>(texts.size()) < maxGaps)
            texts.append(datesText(gap, year));
    }
    const QString text = texts.join(", "_L1);
    return gaps.size() > maxGaps ? u"%1 and %2 more"_s.arg(text).arg(gaps.size() - maxGaps) : text;
}

/// Reports with and without the column `creativeid` give two records of the same day.
qint64 recordsHeldTwice(const sqlite::Connection &connection) {
    return connection.number(
        "SELECT count(*) FROM tblGoogleDays AS plain WHERE CreativeId = 0 "
        "AND EXISTS (SELECT 1 FROM tblGoogleDays WHERE CreativeId <> 0) "
        "AND EXISTS (SELECT 1 FROM tblGoogleDays AS ad WHERE ad.Campaign = plain.Campaign "
        "AND ad.Adgroup = plain.Adgroup AND ad.KeyWord = plain.KeyWord "
        "AND ad.kwType = plain.kwType AND ad.GoogleDate = plain.GoogleDate "
        "AND ad.CreativeId <> 0)");
}

QString recordsText(qint64 count) {
    const QLocale english(QLocale::English, QLocale::UnitedStates);
    return counted(english.toString(count), "record"_L1);
}

} // namespace

QString coverageText(ProjectRecords &records) {
    const sqlite::Connection &connection = records.connection();
    const std::optional<DateRange> dates = tableDates(records);
    if (!dates)
        return u"No records."_s;
    const qint64 count = connection.number("SELECT count(*) FROM tblGoogleDays");
    QStringList parts{recordsText(count) + u", "_s + datesText(*dates)};
    const auto yearOf = [](DateValue date) { return calendarDay(dayNumber(date)).year; };
    const int year = yearOf(dates->start) == yearOf(dates->end) ? yearOf(dates->start) : 0;
    const std::vector<DateRange> gaps = gapsOf(connection, *dates);
    if (!gaps.empty())
        parts.append(u"no records on "_s + gapsText(gaps, year));
    if (const qint64 twice = recordsHeldTwice(connection); twice > 0)
        parts.append(recordsText(twice) + (twice == 1 ? u" counts"_s : u" count"_s) +
                     u" twice, once with and once without an ad's number"_s);
    return parts.join("; "_L1) + u'.';
}

} // namespace veltrona
