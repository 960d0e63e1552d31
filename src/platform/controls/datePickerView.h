// A date picker on screen. Takes the picker's onValue; the picker must outlive the view. A change
// is told when an edit is finished, not at each digit; a value that the program sets is none.
#pragma once

#include "platform/controls/datePicker.h"

#include <QDateEdit>

namespace veltrona {

class DatePickerView : public QDateEdit {
    Q_OBJECT
public:
    explicit DatePickerView(DatePicker &picker, QWidget *parent = nullptr);
    ~DatePickerView() override;

    /// The locale's short format, the year always with four digits.
    static QString formatOf(const QLocale &locale);

protected:
    void wheelEvent(QWheelEvent *event) override;

private:
    void showValue();

    DatePicker &m_picker;
};

} // namespace veltrona
