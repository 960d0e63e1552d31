// The view of a date picker, which must outlive it. Sets the picker's onValue. Reports a change
// when an edit is finished, not at each digit; a value that the program sets is no change.
#pragma once

#include "core/controls/datePicker.h"

#include <QDateEdit>
#include <QScopedValueRollback>
#include <QStyle>

#include <functional>

class QCalendarWidget;

namespace veltrona {

class DatePickerView : public QDateEdit {
    Q_OBJECT
public:
    explicit DatePickerView(DatePicker &picker, QWidget *parent = nullptr);

    /// The locale's short format, the year always with four digits.
    static QString formatOf(const QLocale &locale);

    /// Passes the day shown to the picker as an edit by the user: on Enter, on losing the focus, at
    /// a step, and when the calendar closes. Commands that don't move the focus call it first.
    void finishEdit();
    void stepBy(int steps) override;
    /// Without what some styles add to a field beyond its widest date.
    QSize sizeHint() const override;

protected:
    void mousePressEvent(QMouseEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    bool focusNextPrevChild(bool next) override;
    bool eventFilter(QObject *watched, QEvent *event) override;
    void wheelEvent(QWheelEvent *event) override;

private:
    void showValue();
    void openCalendar();
    /// The place of a part of the field, if it had this size.
    QRect partOf(const QSize &size, QStyle::SubControl part) const;
    void announceCalendar() const;

    DatePicker &m_picker;
    QScopedValueRollback<std::function<void()>> m_onValue; // the picker's
    QCalendarWidget *m_calendar = nullptr;                 // Qt's, from the first opening on
    bool m_inSection = false;                              // a key for a section is handled
    bool m_movedOn = false; // the last digit filled its section and moved to the next
};

} // namespace veltrona
