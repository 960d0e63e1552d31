// The periods that the notes on figures compare with the one shown. Times of day don't count.
#pragma once

#include "core/base/dateValue.h"

#include <optional>

namespace veltrona {

/// The days just before: as many whole months where the range is whole months, such as a year, else
/// as many days. None if the range is reversed.
std::optional<DateRange> periodBefore(const DateRange &range);
/// The same days of the year before; whole months stay whole. None if the range is reversed, or so
/// long that both have days in common.
std::optional<DateRange> sameDaysOfYearBefore(const DateRange &range);

} // namespace veltrona
