// The project files that the benchmarks work on: 2,800 keywords in 20 campaigns, a record a day for
// each. Made once and kept in the build folder.
#pragma once

#include "core/base/dateValue.h"
#include "core/platform/sqlite/connection.h"

#include <memory>

namespace veltrona::bench {

inline constexpr int campaigns = 20;
inline constexpr int adGroups = 10; // of each campaign
inline constexpr int keywords = 14; // of each ad group
inline constexpr int recordsPerDay = campaigns * adGroups * keywords;
inline constexpr int largeRecords = 365 * recordsPerDay; // 1,022,000
inline constexpr int smallRecords = largeRecords / 10;

/// The first day of all records: 2025-01-01.
int firstDay();
/// The days of a project with so many records.
DateRange daysOf(int records);

/// Empty projects, for imports; the file is made anew.
QString emptyProject();
/// The path of a project with the first `records` records.
QString projectWith(int records);
/// An open connection to it, the same for all callers.
sqlite::Connection &connectionTo(int records);

} // namespace veltrona::bench
