// The project files of the benchmarks: 2,800 keywords in 20 campaigns, a record a day for each, in
// another order every day, as in reports. Made once and kept in the build folder.
#pragma once

#include "core/base/dateValue.h"
#include "core/database/projectRecords.h"

#include <memory>

namespace veltrona::bench {

inline constexpr int campaigns = 20;
inline constexpr int adGroups = 10; // of each campaign
inline constexpr int keywords = 14; // of each ad group
inline constexpr int recordsPerDay = campaigns * adGroups * keywords;
inline constexpr int largeRecords = 365 * recordsPerDay; // 1,022,000
inline constexpr int smallRecords = largeRecords / 10;
inline constexpr int hugeRecords = 5 * largeRecords;

/// What the views show, summed up by SQLite.
inline constexpr const char *twelveSums =
    "sum(Clicks), sum(Impressions), sum(ctr), sum(cpc), sum(cpc <> 0), sum(cost), sum(conv), "
    "sum(CASE conv WHEN 0 THEN 0 ELSE cost * 1.0 / conv END), sum(Pos), sum(Pos <> 0), "
    "sum(ConvValue), sum(Transactions)";

/// The first day of all records: 2025-01-01.
int firstDay();
/// The days of a project with so many records.
DateRange daysOf(int records);

/// An empty project, for imports; made anew by each call.
QString emptyProject();
/// The path of a project with the first `records` records.
QString projectWith(int records);
/// An open connection to it, the same for all callers.
sqlite::Connection &connectionTo(int records);
/// Its records, already in memory.
ProjectRecords &recordsOf(int records);
/// The name that reports give to a column of the table.
QString reportColumn(const QByteArray &column);
/// Makes a report of the rows that follow the project's last record.
QString reportAfter(int records, int rows);

} // namespace veltrona::bench
