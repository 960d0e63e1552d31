// Dates in sentences, in English.
#pragma once

#include "core/base/dateValue.h"

#include <QString>

namespace veltrona {

/// "5 Jan 2007"
QString dateText(int dayNumber);
/// "18 to 24 Nov", "28 Dec 2006 to 3 Jan 2007"; without years where both are `year`. Times of day
/// don't count.
QString datesText(const DateRange &range, int year = 0);

} // namespace veltrona
