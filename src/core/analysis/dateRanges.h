// The ready-made periods of the date range combo.
#pragma once

#include "core/base/dateValue.h"

#include <functional>

namespace veltrona {

/// The entries of the combo, by their index.
enum class RangePreset { ThisWeek, LastWeek, ThisMonth, LastMonth, All, Custom };

using NowFunction = std::function<DateValue()>;

DateRange thisWeek(const NowFunction &now);
DateRange lastWeek(const NowFunction &now);
DateRange thisMonth(const NowFunction &now);
DateRange lastMonth(const NowFunction &now);
/// Two fixed dates around everything; the chart puts the table's own in their place.
DateRange allDates();

} // namespace veltrona
