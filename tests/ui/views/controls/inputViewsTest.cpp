// Date picker and combo: a user's finished edit is told once, the program's own never comes back.
#include "ui/views/controls/comboBoxView.h"
#include "ui/views/controls/datePickerView.h"

#include <QAbstractItemView>
#include <QCalendarWidget>
#include <QLineEdit>
#include <QSignalSpy>
#include <QTableView>
#include <QTest>
#include <QVBoxLayout>
#include <QWheelEvent>

using namespace veltrona;

namespace {

constexpr double halfDay = 0.5;

void wheel(QWidget &widget) {
    const QPointF at = widget.rect().center();
    QWheelEvent event(at, widget.mapToGlobal(at), {}, {0, 120}, {}, {}, Qt::NoScrollPhase, false);
    QCoreApplication::sendEvent(&widget, &event);
}

struct Window : QWidget {
    DatePicker picker;
    int changes = 0;
    DatePickerView date{picker};
    ComboBox combo{QStringList{"Days", "Weeks", "Months"}};
    ComboBoxView list{combo};
    QLineEdit other;
    QList<int> clicks;

    Window() {
        auto *layout = new QVBoxLayout(this);
        for (QWidget *widget : {static_cast<QWidget *>(&date), static_cast<QWidget *>(&list),
                                static_cast<QWidget *>(&other)})
            layout->addWidget(widget);
        date.setDisplayFormat("dd.MM.yyyy");
        picker.setValue(dayNumber(CalendarDay{2007, 5, 14}) + halfDay);
        picker.onChange = [this] { ++changes; };
        combo.onClick = [this] { clicks.append(combo.ListIndex()); };
        show();
        QVERIFY(QTest::qWaitForWindowActive(this));
        other.setFocus();
    }
    ~Window() override {
        for (QWidget *widget : {static_cast<QWidget *>(&date), static_cast<QWidget *>(&list),
                                static_cast<QWidget *>(&other)})
            widget->setParent(nullptr);
    }
};

QString shown(const DatePicker &picker) {
    return isoText(picker.Value());
}

} // namespace

class InputViewsTest : public QObject {
    Q_OBJECT

private slots:
    void anEditIsToldWhenTheFocusLeaves() {
        Window window;
        window.date.setFocus();
        window.date.setSelectedSection(QDateTimeEdit::DaySection);
        QTest::keyClicks(&window.date, "2.1.2008");
        QCOMPARE(window.changes, 0);
        window.other.setFocus();
        QCOMPARE(window.changes, 1);
        QCOMPARE(shown(window.picker), "2008-01-02 12:00:00"); // its time of day kept
    }

    void oneTabStopAndArrowsBetweenSections() {
        Window window;
        window.date.setFocus(Qt::TabFocusReason);
        const auto section = [&](Qt::Key key) {
            QTest::keyClick(&window.date, key);
            return window.date.currentSectionIndex();
        };
        QCOMPARE(section(Qt::Key_Right), 1);
        QCOMPARE(section(Qt::Key_Up), 1);
        QCOMPARE(shown(window.picker), "2007-06-14 12:00:00");
        QCOMPARE(section(Qt::Key_Right) + section(Qt::Key_Right), 2 + 2);
        QCOMPARE(section(Qt::Key_Left), 1);
        QTest::keyClick(&window.date, Qt::Key_Tab);
        QCOMPARE(QApplication::focusWidget(), &window.list);
        QTest::keyClick(&window.list, Qt::Key_Tab, Qt::ShiftModifier);
        QVERIFY(window.date.hasFocus());
    }

    void theCalendarIsAnEdit() {
        Window window;
        QTest::mouseClick(&window.date, Qt::LeftButton, {},
                          QPoint(window.date.width() - 6, window.date.height() / 2));
        QVERIFY(window.date.calendarWidget()->isVisible());
        QCalendarWidget *calendar = window.date.calendarWidget();
        QTest::keyClick(calendar->focusProxy() ? calendar->focusProxy() : calendar, Qt::Key_Down);
        QCOMPARE(window.changes, 0); // still looking for a day
        auto *days = calendar->findChild<QTableView *>();
        QTest::mouseClick(days->viewport(), Qt::LeftButton, {},
                          days->visualRect(days->currentIndex()).center());
        QCoreApplication::sendPostedEvents(&window.date); // but no event that moves the focus
        QCOMPARE(shown(window.picker), "2007-05-21 12:00:00");
        QCOMPARE(window.changes, 1);
    }

    // A calendar that is there but hidden would be told of at each change of the date.
    void theCalendarOpensByKeyAndIsSilentWhileHidden() {
        Window window;
        QVERIFY(!window.date.findChild<QCalendarWidget *>());
        window.date.setFocus();
        for (const auto &[key, modifier] :
             {std::pair(Qt::Key_F4, Qt::NoModifier), std::pair(Qt::Key_Down, Qt::AltModifier)}) {
            QTest::keyClick(&window.date, key, modifier);
            auto *calendar = window.date.findChild<QCalendarWidget *>();
            QVERIFY(calendar && calendar->isVisible());
            QCOMPARE(calendar->firstDayOfWeek(), Qt::Sunday);
            calendar->window()->close();
            QSignalSpy told(calendar->findChild<QTableView *>()->selectionModel(),
                            &QItemSelectionModel::currentChanged);
            window.picker.setValue(window.picker.Value() + 1);
            QCOMPARE(calendar->selectedDate(), window.date.date());
            QVERIFY(told.isEmpty());
        }
        QCOMPARE(window.changes, 0);
    }

    // In this zone the clock skips the midnight of that day.
    void holdsADayWithoutMidnight() {
        const QByteArray before = qgetenv("TZ");
        const auto restore = qScopeGuard([&] {
            qputenv("TZ", before);
            tzset();
        });
        qputenv("TZ", "America/Sao_Paulo");
        tzset();
        Window window;
        window.picker.setValue(dayNumber(CalendarDay{2007, 10, 14}));
        QCOMPARE(window.date.date(), QDate(2007, 10, 14));
        window.date.setFocus();
        window.date.setCurrentSection(QDateTimeEdit::DaySection);
        QTest::keyClick(&window.date, Qt::Key_Up);
        QTest::keyClick(&window.date, Qt::Key_Down);
        QCOMPARE(shown(window.picker), "2007-10-14");
    }

    void theWheelNeedsTheFocus() {
        Window window;
        window.combo.setListIndex(1);
        wheel(window.date);
        wheel(window.list);
        QCOMPARE(window.changes, 0);
        QCOMPARE(window.clicks, QList<int>{1}); // the program's own
    }

    void aChoiceIsToldEachTime() {
        Window window;
        QCOMPARE(window.list.currentIndex(), -1);
        window.combo.setListIndex(1); // by the program: told once, shown
        QCOMPARE(window.list.currentIndex(), 1);
        QCOMPARE(window.clicks, QList<int>({1}));
        window.list.setFocus();
        QTest::keyClick(&window.list, Qt::Key_Down);
        QCOMPARE(window.clicks, QList<int>({1, 2}));
        for (int time = 0; time < 2; ++time) { // the same entry again
            window.list.showPopup();
            QTest::keyClick(window.list.findChild<QAbstractItemView *>(), Qt::Key_Return);
        }
        QCOMPARE(window.clicks, QList<int>({1, 2, 2, 2}));
        window.combo.setListIndex(-1);
        QCOMPARE(window.list.currentText(), QString());
    }
};

QTEST_MAIN(InputViewsTest)
#include "inputViewsTest.moc"
