// A date picker on screen. Takes the picker's onValue; the picker must outlive the view. A change
// is told when an edit is finished, not at each digit; a value that the program sets is none.
#pragma once

#include "core/controls/datePicker.h"

#include <QDateEdit>

class QCalendarWidget;

namespace veltrona {

class DatePickerView : public QDateEdit {
    Q_OBJECT
public:
    explicit DatePickerView(DatePicker &picker, QWidget *parent = nullptr);
    ~DatePickerView() override;

    /// The locale's short format, the year always with four digits.
    static QString formatOf(const QLocale &locale);

    /// Takes the day shown as the user's: on Enter, when the focus goes, at a step, and when the
    /// calendar closes. A command that leaves the focus where it is may call it before it reads.
    void finishEdit();
    void stepBy(int steps) override;

protected:
    void mousePressEvent(QMouseEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    bool eventFilter(QObject *watched, QEvent *event) override;
    void wheelEvent(QWheelEvent *event) override;

private:
    void showValue();
    void openCalendar();
    void setUpCalendar();

    DatePicker &m_picker;
    QCalendarWidget *m_calendar = nullptr; // the toolkit's, from the first opening on
    bool m_movedOn = false; // the last digit filled its section and moved on to the next
};

} // namespace veltrona
