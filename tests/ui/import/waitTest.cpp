// The window shown during an import: when it paints, and that it can neither be closed nor run
// twice.
#include "support/dataTable.h"
#include "ui/import/frmWait.h"

#include <QApplication>
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
        const test::DataTable<int, int, int> row;
        row("59", 59, 1, 59);
        row("60", 60, 2, 30);
        row("32767", 32767, 1092, 31);
    }
    void repaints() {
        const auto [rows, step, count] = test::row<int, int, int>();
        frmWait &form = frmWait::instance();
        PaintWatch watch(form);
        QList<int> painted;
        form.init(0, rows);
        const QSignalSpy changes(&bar(), &QProgressBar::valueChanged);
        form.Show([&, last = rows] {
            for (int row = 1; row <= last; ++row) {
                const int before = watch.paints;
                form.inc();
                if (watch.paints != before) {
                    painted += row;
                    QCOMPARE(bar().value(), row);
                }
            }
            QCOMPARE(bar().value(), last);
        });
        QList<int> expected;
        for (int at = 1; expected.size() < count; at += step)
            expected += at;
        QCOMPARE(painted, expected);
        QVERIFY2(changes.size() <= count + 1, "told a screen reader more than there was to see");
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
};

QTEST_MAIN(WaitTest)
#include "waitTest.moc"
