#include "core/controls/datePicker.h"

namespace veltrona {

void DatePicker::setValue(DateValue value) {
    m_value = value;
    if (onValue)
        onValue();
}

void DatePicker::editDay(int day) {
    if (day == dayNumber(m_value))
        return;
    m_value = day + timeOfDay(m_value);
    if (onValue)
        onValue();
    if (onChange)
        onChange();
}

} // namespace veltrona
