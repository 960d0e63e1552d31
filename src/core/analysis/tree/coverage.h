// What the open project holds, in one sentence: records, days, gaps between them, and records that
// are there twice.
#pragma once

#include "core/database/projectRecords.h"

#include <QString>

namespace veltrona {

/// "11,680 records, 1 Jan to 31 Dec 2025; no records on 3 to 5 May." Indexes answer this, at worst
/// by one scan. Throws Failure, also for a date that can't be read.
QString coverageText(ProjectRecords &records);

} // namespace veltrona
