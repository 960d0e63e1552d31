#include "platform/controls/datePickerView.h"

#include <QSignalBlocker>
#include <QWheelEvent>

namespace veltrona {

DatePickerView::DatePickerView(DatePicker &picker, QWidget *parent)
    : QDateEdit(parent), m_picker(picker) {
    // In local time, a day whose midnight a clock change leaves out couldn't be held.
    setTimeSpec(Qt::UTC);
    setDateRange(QDate(1752, 9, 14), QDate(9999, 12, 31));
    setCalendarPopup(true);
    setKeyboardTracking(false);
    setFocusPolicy(Qt::StrongFocus);
    setDisplayFormat(formatOf(locale()));
    showValue();
    m_picker.onValue = [this] { showValue(); };
    connect(this, &QDateEdit::dateChanged, this, [this](QDate date) {
        m_picker.editDay(dayNumber(CalendarDay{date.year(), date.month(), date.day()}));
    });
}

DatePickerView::~DatePickerView() {
    m_picker.onValue = nullptr;
}

QString DatePickerView::formatOf(const QLocale &locale) {
    QString format = locale.dateFormat(QLocale::ShortFormat);
    if (!format.contains(QStringLiteral("yyyy")))
        format.replace(QStringLiteral("yy"), QStringLiteral("yyyy"));
    return format;
}

void DatePickerView::showValue() {
    const QSignalBlocker blocker(this);
    const CalendarDay day = calendarDay(dayNumber(m_picker.Value()));
    setDate(QDate(day.year, day.month, day.day));
}

void DatePickerView::wheelEvent(QWheelEvent *event) {
    if (hasFocus())
        QDateEdit::wheelEvent(event);
    else
        event->ignore();
}

} // namespace veltrona
