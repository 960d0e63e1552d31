// The window shown during an import: when it paints, and that it can neither be closed, run twice
// nor outlive its import.
#include "import/frmWait.h"
#include "support/dataTable.h"
#include "support/failureOf.h"

#include <QApplication>
#include <QLabel>
#include <QProgressBar>
#include <QSignalSpy>
#include <QTest>

using namespace veltrona;

namespace {
// Counts the paint events of a window.
class PaintWatch : public QObject {
public:
    explicit PaintWatch(QWidget &watched) : m_watched(watched) { watched.installEventFilter(this); }
    int paints = 0;

protected:
    bool eventFilter(QObject *object, QEvent *event) override {
        if (object == &m_watched && event->type() == QEvent::Paint)
            ++paints;
        return false;
    }

private:
    QWidget &m_watched;
};

QProgressBar &bar() {
    return *frmWait::instance().findChild<QProgressBar *>("pbWait");
}
} // namespace

class WaitTest : public QObject {
    Q_OBJECT

private slots:
    void repaints_data() {
        const test::DataTable<int, int, int> row("rows", "step", "count");
        row("1", 1, 1, 1);
        row("29", 29, 1, 29);
        row("59", 59, 1, 59);
        row("60", 60, 2, 30);
        row("1000", 1000, 33, 31);
        row("32767", 32767, 1092, 31);
    }
    // Paints and dispatches happen in the same steps, and at no other.
    void repaints() {
        QFETCH(int, rows);
        QFETCH(int, step);
        QFETCH(int, count);
        frmWait &form = frmWait::instance();
        PaintWatch watch(form);
        QList<int> painted;
        QList<int> dispatched;
        int row = 0;
        QObject here; // what the last rows have posted goes with it
        form.init(0, rows);
        const QSignalSpy changes(&bar(), &QProgressBar::valueChanged);
        form.Show([&] {
            for (row = 1; row <= rows; ++row) {
                const int before = watch.paints;
                if (row == 1 || (row - 1) % step == 0 || row % 7 == 0) {
                    QMetaObject::invokeMethod(
                        &here,
                        [&] {
                            if (dispatched.isEmpty() || dispatched.last() != row)
                                dispatched += row;
                        },
                        Qt::QueuedConnection);
                }
                form.inc();
                if (watch.paints != before) {
                    painted += row;
                    QCOMPARE(bar().value(), row);
                }
            }
            QCOMPARE(bar().value(), rows);
        });
        QList<int> expected;
        for (int at = 1; expected.size() < count; at += step)
            expected += at;
        QCOMPARE(painted, expected);
        QVERIFY2(changes.size() <= count + 1, "told a screen reader more than there was to see");
        QCOMPARE(dispatched, expected);
    }

    void aReportWithoutRows() {
        frmWait &form = frmWait::instance();
        int runs = 0;
        form.init(0, 0);
        form.Show([&] {
            ++runs;
            form.inc(); // one too many
            QVERIFY2(bar().maximum() > bar().minimum(), "a bar that runs to and fro by itself");
        });
        QCOMPARE(runs, 1);
        QCOMPARE(form.Value(), 0);
    }

    void itCannotBeClosedOrRunTwice() {
        frmWait &form = frmWait::instance();
        int runs = 0;
        form.init(0, 10);
        form.Show([&] {
            ++runs;
            QVERIFY(form.isVisible());
            form.close();
            QTest::keyClick(&form, Qt::Key_Escape);
            QTest::keyClick(&form, Qt::Key_F4, Qt::AltModifier);
            QEvent activate(QEvent::WindowActivate);
            QApplication::sendEvent(&form, &activate);
            form.repaint();
            form.Show([&] { ++runs; });
            QTest::qWait(1); // dispatches what all this has posted
            form.inc();
            QVERIFY(form.isVisible());
        });
        QCOMPARE(runs, 1);
        QVERIFY(!form.isVisible());
        form.init(0, 10);
        form.Show([&] { ++runs; });
        QCOMPARE(runs, 2);
    }

    void aFailureComesOutOfTheShowCall() {
        frmWait &form = frmWait::instance();
        form.init(0, 10);
        const auto failure = failureOf([&] {
            form.Show([&] {
                form.inc();
                throw Failure(13, "disk full");
            });
        });
        QVERIFY(failure && failure->number() == 13);
        QVERIFY(!form.isVisible());
        QVERIFY(!QApplication::activeModalWidget());
        // The next import knows nothing of it.
        form.init(0, 1);
        form.Show([&] { form.inc(); });
        QCOMPARE(form.Value(), 1);
    }

    void theTextIsWholeAtAnyFont_data() {
        const test::DataTable<double> row("points");
        row("small", 8);
        row("large", 24);
    }

    void theTextIsWholeAtAnyFont() {
        QFETCH(double, points);
        const QFont before = QApplication::font();
        QFont font = before;
        font.setPointSizeF(points);
        QApplication::setFont(font);
        frmWait &form = frmWait::instance();
        form.init(0, 1);
        form.Show([&] {
            QCoreApplication::processEvents(); // a font comes by an event
            const auto *label = form.findChild<QLabel *>("Label1");
            QVERIFY(label->width() >= label->sizeHint().width());
            QVERIFY(label->height() >= label->sizeHint().height());
            QVERIFY(form.rect().contains(label->geometry()));
            QVERIFY(form.rect().contains(bar().geometry()));
            QVERIFY(!label->geometry().intersects(bar().geometry()));
            QVERIFY(form.windowFlags().testFlag(Qt::FramelessWindowHint));
            QVERIFY(form.isModal());
            QCOMPARE(bar().accessibleName(), label->text());
        });
        QApplication::setFont(before);
    }
};

QTEST_MAIN(WaitTest)
#include "waitTest.moc"
