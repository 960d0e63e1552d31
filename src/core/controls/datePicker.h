// The data behind a date picker: a date value with a time of day that the picker doesn't show.
#pragma once

#include "core/base/dateValue.h"

#include <functional>

namespace veltrona {

class DatePicker {
public:
    DateValue Value() const { return m_value; }
    /// A value that the program sets is no change: onChange doesn't run.
    void setValue(DateValue value);
    /// The user has finished an edit: another day, the time of day kept. Runs onChange if the day
    /// differs from the one held.
    void editDay(int dayNumber);

    std::function<void()> onChange; // set by the window
    std::function<void()> onValue;  // set by the view

private:
    DateValue m_value = 0;
};

} // namespace veltrona
