// Data of a date picker: a date value, including a time of day that the picker doesn't show.
#pragma once

#include "core/base/dateValue.h"

#include <functional>

namespace veltrona {

class DatePicker {
public:
    DateValue Value() const { return m_value; }
    /// For the program: doesn't run onChange.
    void setValue(DateValue value) {
        m_value = value;
        if (onValue)
            onValue();
    }
    /// For the view, after an edit by the user: sets the day, keeps the time of day, and runs
    /// onChange if the day is another.
    void editDay(int day) {
        if (day == dayNumber(m_value))
            return;
        setValue(day + timeOfDay(m_value));
        if (onChange)
            onChange();
    }

    std::function<void()> onChange; // set by the window
    std::function<void()> onValue;  // set by the view

private:
    DateValue m_value = 0;
};

} // namespace veltrona
