// What every leaf of the account cost and brought in a period, in one walk: whoever asks for many
// nodes at once adds the leaves up.
#pragma once

#include "core/base/dateValue.h"
#include "core/database/projectRecords.h"

#include <functional>

namespace veltrona {

struct LeafSums {
    LeafDictionary::Names names; // as stored, by NameColumn; valid during the visit
    double cost = 0;             // currency units
    double conversionValue = 0;  // currency units
};

/// Visits each leaf that has records in the period, in no order. Times of day of the range don't
/// count. Throws Failure.
void visitLeafSums(ProjectRecords &records, const DateRange &range,
                   const std::function<void(const LeafSums &)> &visitor);
/// False where the records are neither in memory nor few: one plain scan is faster then.
bool areLeafSumsCheap(ProjectRecords &records, const DateRange &range);

} // namespace veltrona
