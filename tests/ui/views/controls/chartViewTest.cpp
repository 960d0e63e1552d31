// The chart: round axes, labels that have room, bars, tooltips, the picture, and its table for a
// screen reader.
#include "ui/views/controls/chartView.h"
#include "core/controls/chartAxis.h"
#include "ui/views/controls/chartPainter.h"

#include "support/dataTable.h"
#include "support/pixels.h"

#include <QAccessible>
#include <QClipboard>
#include <QDate>
#include <QHelpEvent>
#include <QPainter>
#include <QTest>
#include <QToolTip>

#include <cmath>
#include <limits>

using namespace veltrona;

namespace {

void fill(Chart &chart, int bars, double factor = 10) {
    chart.setRowCount(bars);
    chart.setSeriesName("Clicks");
    for (int bar = 1; bar <= bars; ++bar) {
        const QDate day = QDate(2007, 9, 27).addDays(bar - 1);
        chart.DataGrid().setRowLabel(bar, 1, QLocale::c().toString(day, "MMM dd"));
        chart.DataGrid().SetData(bar, 1, bar * factor, 0);
        chart.DataGrid().setRowDates(bar, day.toString(Qt::ISODate));
    }
    chart.changed();
}

QString plain(QString text) {
    return text.replace(QChar(0x202F), QLatin1Char('_'));
}

} // namespace

class ChartViewTest : public QObject {
    Q_OBJECT

private slots:
    void initTestCase() { QAccessible::setActive(true); }

    void axesAreRound_data() {
        const test::DataTable<double, double, int, QString> row;
        row("nothing", 0, 0, 5, "0 1");
        row("hundred", 0, 100, 5, "0 20 40 60 80 100");
        row("thousands", 0, 1234567, 4, "0 500_000 1_000_000 1_500_000");
        row("tenths of cents", 0, 0.01, 2, "0.000 0.005 0.010");
        row("both sides", -120, 80, 5, "\u2212150 \u2212100 \u221250 0 50 100");
        row("not finite", std::nan(""), std::numeric_limits<double>::infinity(), 5, "0 1");
        row("huge", 0, 2E20, 2, "0 1e+20 2e+20");
    }
    void axesAreRound() {
        const auto [low, high, most, lines] = test::row<double, double, int, QString>();
        const AxisScale scale = axisScale(low, high, most);
        QStringList texts;
        for (int line = scale.first; line <= scale.last; ++line)
            texts.append(plain(axisText(scale, line)));
        QCOMPARE(texts.join(QLatin1Char(' ')), lines);
    }

    void valuesReadAsTheyWereSet() {
        QCOMPARE(plain(valueText(1234567)), "1_234_567");
        QCOMPARE(plain(valueText(-1234.5)), "\u22121_234.5");
        QCOMPARE(valueText(static_cast<double>(0.1F)), "0.1");
        QCOMPARE(valueText(-0.0), "0");
        QCOMPARE(valueText(-999), "\u2212999");
    }

    void labelsHaveRoom() {
        const QImage device(1, 1, QImage::Format_RGB32);
        for (const int bars : {2, 31, 46, 90}) {
            for (const int width : {200, 595, 1600, 5000}) {
                Chart chart;
                fill(chart, bars, -12345);
                const QRectF area(0, 0, width, 300);
                const ChartLayout layout =
                    layOutChart(QFont("DejaVu Sans", 9), &device, area, chart);
                const QFontMetricsF metrics(layout.font, &device);
                QVERIFY(area.contains(layout.plot));
                QVERIFY(layout.plot.left() > metrics.horizontalAdvance(valueText(bars * -12345.)));
                QVERIFY(layout.labelStep < bars);
                const double room = layout.labelStep * layout.column(0).width();
                for (int bar = 1; bar <= bars; bar += layout.labelStep)
                    QVERIFY(metrics.horizontalAdvance(chart.DataGrid().RowLabel(bar, 1)) < room);
            }
        }
    }

    void growsOnAWideArea() {
        const QImage device(1, 1, QImage::Format_RGB32);
        Chart chart;
        fill(chart, 31);
        QFont font;
        font.setPixelSize(12);
        const auto on = [&](double width) {
            return layOutChart(font, &device, QRectF(0, 0, width, 500), chart);
        };
        const ChartLayout usual = on(1200);
        QCOMPARE(usual.font, font);
        for (const auto &[width, growth] : {std::pair(1399, 1.), {1800, 1.5}, {9000, 2.}}) {
            QCOMPARE(on(width).font.pixelSize(), 12 * growth);
            QCOMPARE(on(width).gap, usual.gap * growth);
        }
        QCOMPARE(on(2400).line, 2 * usual.line);
        QVERIFY(on(2400).scale.step > usual.scale.step);
        font.setPixelSize(24); // letters that are large already
        QCOMPARE(on(2400).font, font);
        QCOMPARE(on(3600).font.pixelSize(), 36);
    }

    void barsStandOnTheirValues() {
        Chart chart;
        fill(chart, 4);
        chart.DataGrid().SetData(1, 1, 100, 0);
        chart.DataGrid().SetData(2, 1, -50, 0);
        chart.DataGrid().SetData(3, 1, std::numeric_limits<double>::infinity(), 0);
        chart.DataGrid().SetData(4, 1, 0.01, 0);
        QImage image(600, 300, QImage::Format_RGB32);
        QPainter painter(&image);
        const ChartColors colors = ChartColors::lightPaper();
        paintChart(painter, image.rect(), chart, colors);
        const ChartLayout layout = layOutChart(QFont(), &image, image.rect(), chart);
        painter.end();
        const auto barAt = [&](int bar, double value) {
            const QPoint at(qRound(layout.column(bar).center().x()), qRound(layout.y(value)));
            return image.pixelColor(at) == colors.bar;
        };
        QVERIFY(barAt(0, 95) && barAt(0, 5) && !barAt(0, 105) && !barAt(0, -5));
        QVERIFY(barAt(1, -5) && barAt(1, -45) && !barAt(1, -55) && !barAt(1, 5));
        QVERIFY(!barAt(2, 5) && !barAt(2, -5));
        const QRect least = layout.column(3).toRect().adjusted(0, 0, 0, 9);
        QVERIFY(!test::areaOf(image.copy(least), [&](QColor color) {
                     return color == colors.bar;
                 }).isNull());
        const auto isPaper = [&](const QRectF &part) {
            return test::areaOf(image.copy(part.toRect()),
                                [&](const QColor &color) { return color != colors.paper; })
                .isNull();
        };
        const QRectF plot = layout.plot;
        QVERIFY(!isPaper({plot.left(), plot.bottom() + 3, plot.width(), 20}));    // bars' labels
        QVERIFY(!isPaper({plot.left() - 20, plot.top(), 15, plot.height() / 2})); // the axis's
    }

    void tellsABarAnywhereInItsColumn() {
        Chart chart;
        ChartView view(chart);
        fill(chart, 31);
        chart.DataGrid().setRowLabel(5, 1, "<b>Oct 01");
        chart.DataGrid().SetData(5, 1, 1234.56, 0);
        view.resize(800, 300);
        view.show();
        for (const int y : {2, 150, 298}) {
            const QPoint at(view.columnRect(4).center().x(), y);
            QHelpEvent event(QEvent::ToolTip, at, view.mapToGlobal(at));
            QCoreApplication::sendEvent(&view, &event);
            const QString text = plain(QToolTip::text());
            QVERIFY(text.contains("&lt;b&gt;Oct 01\n2007-10-01\nClicks: 1_234.56"));
        }
    }

    void thePictureIsLightAndUnscaledAndHasNoTexts() {
        for (const int factor : {0, 10}) {
            Chart chart;
            ChartView view(chart);
            fill(chart, 12, factor);
            view.resize(593, 321);
            const QImage bare = view.picture();
            const QImage shown = view.grab().toImage();
            chart.setTexts({"No records", "Each bar", ""});
            fill(chart, 12, factor);
            const QRect plot = layOutChart(view.font(), &view, view.rect(), chart).plot.toRect();
            const QImage worded = view.grab().toImage();
            QVERIFY(worded != shown); // in the empty plot, or beside the title
            QCOMPARE(worded.copy(plot) == shown.copy(plot), factor != 0);
            QPalette dark;
            dark.setColor(QPalette::Base, Qt::black);
            dark.setColor(QPalette::Text, Qt::white);
            view.setPalette(dark);
            view.setFocus();
            view.markBar(3);
            QCOMPARE(view.picture(), bare);
            QCOMPARE(bare.size(), QSize(593, 321));
            QCOMPARE(bare.devicePixelRatio(), 1.0);
            QCOMPARE(bare.pixelColor(0, 0), QColor(Qt::white));
            QCOMPARE(view.grab().toImage().pixelColor(3, 3), QColor(Qt::black));
            chart.DataGrid().setRowHasRecords(2, false);
            QVERIFY(view.barText(1).endsWith(" (no records)"));
            QVERIFY(!view.barText(0).contains("no records"));
        }
    }

    void keysMoveAlongTheBars() {
        Chart chart;
        ChartView view(chart);
        fill(chart, 4);
        view.resize(500, 300);
        view.show();
        QVERIFY(QTest::qWaitForWindowActive(&view));
        view.setFocus();
        const auto after = [&](Qt::Key key) {
            QTest::keyClick(&view, key);
            return view.markedBar();
        };
        QCOMPARE(after(Qt::Key_Right), 0);
        QCOMPARE(after(Qt::Key_Right), 1);
        QVERIFY(QToolTip::text().contains("Clicks: 20"));
        QCOMPARE(after(Qt::Key_End), 3);
        QCOMPARE(after(Qt::Key_Right), 3);
        QCOMPARE(after(Qt::Key_Home), 0);
        QCOMPARE(after(Qt::Key_Left), 0);
        int chosen = -1;
        chart.onBarChosen = [&chosen](int bar) { chosen = bar; };
        QTest::keyClick(&view, Qt::Key_Return);
        QCOMPARE(chosen, 0);
        QTest::mouseDClick(&view, Qt::LeftButton, {}, view.columnRect(2).center());
        QCOMPARE(chosen, 2);
        QTest::mouseDClick(&view, Qt::LeftButton, {}, QPoint(1, 1)); // beside the bars
        QCOMPARE(chosen, 2);
        QFocusEvent menu(QEvent::FocusOut, Qt::PopupFocusReason);
        QCoreApplication::sendEvent(&view, &menu);
        QCOMPARE(view.markedBar(), 0);
        view.markBar(3);
        fill(chart, 2); // the marked bar has gone
        QCOMPARE(view.markedBar(), -1);
        QTest::keyClick(&view, Qt::Key_C, Qt::ControlModifier | Qt::ShiftModifier);
        QCOMPARE(QGuiApplication::clipboard()->text(),
                 "Bar\tDates\tClicks\nSep 27\t2007-09-27\t10\nSep 28\t2007-09-28\t20");
        QTest::keySequence(&view, QKeySequence(QKeySequence::Copy));
        QCOMPARE(QGuiApplication::clipboard()->image().size(), view.size());
        fill(chart, 0);
        QCOMPARE(after(Qt::Key_Left), -1);
        QCOMPARE(after(Qt::Key_Home), -1);
        view.grab();
    }

    void isReadOut() {
        Chart chart;
        ChartView view(chart);
        fill(chart, 31);
        chart.DataGrid().SetData(2, 1, 12345, 0);
        view.show();
        QAccessibleInterface *face = QAccessible::queryAccessibleInterface(&view);
        QCOMPARE(face->role(), QAccessible::Chart);
        QCOMPARE(face->text(QAccessible::Name), "Clicks");
        QAccessibleTableInterface *table = face->tableInterface();
        QVERIFY(table);
        QCOMPARE(table->rowCount(), 31);
        QCOMPARE(table->columnDescription(1), "Value");
        QCOMPARE(table->cellAt(1, 0)->text(QAccessible::Name), "2007-09-28");
        QCOMPARE(table->cellAt(1, 1)->text(QAccessible::Name), "2007-09-28: 12345");
        QCOMPARE(table->cellAt(1, 2)->text(QAccessible::Name), "Sep 28");
        QCOMPARE(face->childCount(), 93);
        for (int child = 0; child < face->childCount(); ++child) {
            QCOMPARE(face->indexOfChild(face->child(child)), child);
            QCOMPARE(face->child(child)->parent(), face);
        }
        QAccessibleInterface *last = table->cellAt(30, 1);
        fill(chart, 2);
        QVERIFY(!last->isValid());
        QCOMPARE(table->rowCount(), 2);
        QVERIFY(!table->cellAt(2, 0));
    }
};

QTEST_MAIN(ChartViewTest)
#include "chartViewTest.moc"
