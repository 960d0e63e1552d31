// The preset periods of the date range combo, one table row each. Whole days are subtracted, so
// that the time of day stays.
#pragma once

#include "core/base/dateValue.h"

#include <algorithm>
#include <array>
#include <functional>
#include <optional>

namespace veltrona {

using NowFunction = std::function<DateValue()>;

inline DateValue firstOfMonth(DateValue date) {
    return date - (calendarDay(dayNumber(date)).day - 1);
}

inline DateRange thisWeek(const NowFunction &now) {
    const DateValue today = now();
    return {today - (weekday(dayNumber(today)) - 1), now()};
}

inline DateRange lastWeek(const NowFunction &now) {
    const DateValue today = now();
    const DateValue end = today - weekday(dayNumber(today)); // on a Saturday the one before
    return {end - 6, end};
}

inline DateRange thisMonth(const NowFunction &now) {
    const DateValue first = firstOfMonth(now());
    return {first, now()};
}

inline DateRange lastMonth(const NowFunction &now) {
    const DateValue end = firstOfMonth(now()) - 1;
    return {firstOfMonth(end), end};
}

/// Two fixed dates around everything; the chart replaces them by the table's own.
inline DateRange allDates(const NowFunction & = {}) {
    return {dateValue(CalendarDay{1989, 1, 1}), dateValue(CalendarDay{2032, 1, 1})};
}

/// The index in the combo.
enum class RangePreset { ThisWeek, LastWeek, ThisMonth, LastMonth, All, Custom };

struct RangePresetRow {
    RangePreset preset;
    const char *caption;
    DateRange (*range)(const NowFunction &now); // or null
};

inline constexpr std::array rangePresets = {
    RangePresetRow{RangePreset::ThisWeek, "This week", thisWeek},
    RangePresetRow{RangePreset::LastWeek, "Last week", lastWeek},
    RangePresetRow{RangePreset::ThisMonth, "This month", thisMonth},
    RangePresetRow{RangePreset::LastMonth, "Last month", lastMonth},
    RangePresetRow{RangePreset::All, "All", allDates},
    RangePresetRow{RangePreset::Custom, "Custom", nullptr},
};

static_assert(std::ranges::is_sorted(rangePresets, std::ranges::less_equal(),
                                     &RangePresetRow::preset) &&
                  rangePresets.back().preset == RangePreset(rangePresets.size() - 1),
              "a row for each preset, in the order of the enum");

/// None for a preset that leaves the dates as they are.
inline std::optional<DateRange> presetRange(RangePreset preset, const NowFunction &now) {
    for (const RangePresetRow &row : rangePresets) {
        if (row.preset == preset && row.range)
            return row.range(now);
    }
    return std::nullopt;
}

} // namespace veltrona
