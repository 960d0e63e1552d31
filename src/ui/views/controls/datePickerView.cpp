#include "ui/views/controls/datePickerView.h"

#include "core/base/dateTexts.h"
#include "core/base/dateValue.h"
#include "ui/views/accessible/announcement.h"

#include <QCalendarWidget>
#include <QCoreApplication>
#include <QKeyEvent>
#include <QSignalBlocker>
#include <QStyleOptionComboBox>
#include <QTableView>
#include <QTimeZone>
#include <QWheelEvent>

#include <algorithm>
#include <utility>

namespace veltrona {

DatePickerView::DatePickerView(DatePicker &picker, QWidget *parent)
    : QDateEdit(parent), m_picker(picker), m_onValue(picker.onValue, [this] { showValue(); }) {
    // In local time it couldn't hold a day whose midnight a clock change skips.
#if QT_VERSION >= QT_VERSION_CHECK(6, 7, 0)
    setTimeZone(QTimeZone::UTC);
#else
    setTimeSpec(Qt::UTC);
#endif
    setDateRange(QDate(firstCalendarDay.year, firstCalendarDay.month, firstCalendarDay.day),
                 QDate(9999, 12, 31));
    setCalendarPopup(true);
    setKeyboardTracking(false);
    setFocusPolicy(Qt::StrongFocus);
    setDisplayFormat(formatOf(locale()));
    showValue();
    // Not dateChanged, which is also emitted when the cursor moves from the day to the month.
    connect(this, &QDateEdit::editingFinished, this, &DatePickerView::finishEdit);
}

void DatePickerView::finishEdit() {
    interpretText();
    m_picker.editDay(dayNumber({date().year(), date().month(), date().day()}));
}

void DatePickerView::stepBy(int steps) {
    QDateEdit::stepBy(steps);
    finishEdit();
}

// Qt makes its calendar at the first press of the arrow.
void DatePickerView::mousePressEvent(QMouseEvent *event) {
    QDateEdit::mousePressEvent(event);
    if (m_calendar)
        return;
    m_calendar = findChild<QCalendarWidget *>();
    if (!m_calendar)
        return;
    m_calendar->setFirstDayOfWeek(Qt::Sunday); // as the weeks of the presets and of the chart
    m_calendar->installEventFilter(this);
    connect(m_calendar, &QCalendarWidget::currentPageChanged, this,
            &DatePickerView::announceCalendar);
    announceCalendar(); // it has opened already
}

void DatePickerView::announceCalendar() const {
    const QDate date = m_calendar->selectedDate();
    if (m_calendar->isVisible())
        announce(*this, dateText(dayNumber({date.year(), date.month(), date.day()})));
}

QRect DatePickerView::partOf(const QSize &size, QStyle::SubControl part) const {
    QStyleOptionComboBox option;
    option.initFrom(this);
    option.editable = true;
    option.rect = QRect({}, size);
    return style()->subControlRect(QStyle::CC_ComboBox, &option, part, this);
}

QSize DatePickerView::sizeHint() const {
    QSize size = QDateEdit::sizeHint();
    int widest = 0;
    for (int month = 1; month <= 12; ++month) {
        const QDate day(2000, month, 28);
        widest = std::max(widest,
                          fontMetrics().horizontalAdvance(locale().toString(day, displayFormat())));
    }
    constexpr int margins = 24; // of a text in any style, with the cursor
    const int field = partOf(size, QStyle::SC_ComboBoxEditField).width();
    size.rwidth() -= std::max(0, field - widest - margins);
    return size;
}

/// Qt opens its calendar by the mouse alone.
void DatePickerView::openCalendar() {
    const QPointF arrow = partOf(size(), QStyle::SC_ComboBoxArrow).center();
    QMouseEvent press(QEvent::MouseButtonPress, arrow, mapToGlobal(arrow), Qt::LeftButton,
                      Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(this, &press);
}

// A date is one stop of the Tab key, which would stop at each section. Qt calls this as well when a
// typed section is full.
bool DatePickerView::focusNextPrevChild(bool next) {
    // NOLINTNEXTLINE(bugprone-parent-virtual-call): QDateEdit's is what stops at sections.
    return m_inSection ? QDateEdit::focusNextPrevChild(next) : QWidget::focusNextPrevChild(next);
}

// After "02" the cursor is already on the month; the separator that the user types next would move
// it to the year.
void DatePickerView::keyPressEvent(QKeyEvent *event) {
    const bool altDown = event->key() == Qt::Key_Down && event->modifiers() == Qt::AltModifier;
    if (altDown || (event->key() == Qt::Key_F4 && event->modifiers() == Qt::NoModifier))
        return openCalendar();
    const bool isLeft = event->key() == Qt::Key_Left;
    if ((isLeft || event->key() == Qt::Key_Right) && event->modifiers() == Qt::NoModifier) {
        setSelectedSection(sectionAt(
            std::clamp(currentSectionIndex() + (isLeft ? -1 : 1), 0, sectionCount() - 1)));
        return;
    }
    const QChar typed = event->text().isEmpty() ? QChar() : event->text().front();
    const bool separator = typed.isPrint() && !typed.isLetterOrNumber();
    const bool movedOn = std::exchange(m_movedOn, false);
    if (movedOn && separator)
        return event->accept();
    const int section = currentSectionIndex();
    const QScopedValueRollback inSection(m_inSection, true);
    QDateEdit::keyPressEvent(event);
    m_movedOn = typed.isDigit() && currentSectionIndex() != section;
}

bool DatePickerView::eventFilter(QObject *watched, QEvent *event) {
    if (watched == m_calendar && (event->type() == QEvent::Show || event->type() == QEvent::Hide)) {
        const bool hidden = event->type() == QEvent::Hide;
        if (!hidden)
            QMetaObject::invokeMethod(this, &DatePickerView::announceCalendar,
                                      Qt::QueuedConnection);
        // A hidden calendar follows the date, which screen readers would announce.
        m_calendar->findChild<QTableView *>()->selectionModel()->blockSignals(hidden);
        // The chosen day is set only after the calendar has begun to close.
        if (hidden)
            QMetaObject::invokeMethod(this, &DatePickerView::finishEdit, Qt::QueuedConnection);
    }
    return QDateEdit::eventFilter(watched, event);
}

QString DatePickerView::formatOf(const QLocale &locale) {
    QString format = locale.dateFormat(QLocale::ShortFormat);
    return format.contains("yyyy") ? format : format.replace("yy", "yyyy");
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
