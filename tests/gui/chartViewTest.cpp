// The chart: round axes, labels that have room, bars, tooltips, the picture at any scale, and its
// table for a screen reader.
#include "platform/controls/chartView.h"
#include "platform/controls/chartAxis.h"
#include "platform/controls/chartPainter.h"

#include "support/dataTable.h"

#include <QAccessible>
#include <QApplication>
#include <QDate>
#include <QHelpEvent>
#include <QPaintEngine>
#include <QPainter>
#include <QProcess>
#include <QTemporaryDir>
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

QString pictureSwitch() {
    return "--picture";
}

/// The texts that a painter draws, each with its place.
class Recorder : public QPaintDevice {
public:
    struct Text {
        QString text;
        QRectF place;
    };
    explicit Recorder(QSize size) : m_size(size), m_engine(*this) {}
    QPaintEngine *paintEngine() const override { return &m_engine; }
    std::vector<Text> texts;

protected:
    int metric(PaintDeviceMetric metric) const override {
        switch (metric) {
        case PdmWidth:
            return m_size.width();
        case PdmHeight:
            return m_size.height();
        case PdmDevicePixelRatio:
            return 1;
        case PdmDevicePixelRatioScaled:
            return static_cast<int>(devicePixelRatioFScale());
        default:
            return 96; // to an inch
        }
    }

private:
    class Engine : public QPaintEngine {
    public:
        explicit Engine(Recorder &owner) : QPaintEngine(AllFeatures), m_owner(owner) {}
        bool begin(QPaintDevice *) override { return true; }
        bool end() override { return true; }
        void updateState(const QPaintEngineState &) override {}
        void drawPath(const QPainterPath &) override {}
        void drawPixmap(const QRectF &, const QPixmap &, const QRectF &) override {}
        Type type() const override { return User; }
        void drawTextItem(const QPointF &at, const QTextItem &item) override {
            const QRectF place(at.x(), at.y() - item.ascent(), item.width(),
                               item.ascent() + item.descent());
            m_owner.texts.push_back({item.text(), place});
        }

    private:
        Recorder &m_owner;
    };
    QSize m_size;
    mutable Engine m_engine;
};

} // namespace

class ChartViewTest : public QObject {
    Q_OBJECT

private slots:
    void initTestCase() { QAccessible::setActive(true); }

    void axesAreRound_data() {
        const test::DataTable<double, double, int, QString> row("low", "high", "most", "lines");
        row("nothing", 0, 0, 5, "0 1");
        row("hundred", 0, 100, 5, "0 20 40 60 80 100");
        row("just above", 0, 101, 5, "0 50 100 150");
        row("thousands", 0, 1234567, 4, "0 500_000 1_000_000 1_500_000");
        row("tenths of cents", 0, 0.01, 2, "0.000 0.005 0.010");
        row("both sides", -120, 80, 5, "\u2212150 \u2212100 \u221250 0 50 100");
        row("below", -7, -3, 4, "\u22128 \u22126 \u22124 \u22122 0");
        row("not finite", std::nan(""), std::numeric_limits<double>::infinity(), 5, "0 1");
        row("huge", 0, 2E20, 2, "0 1e+20 2e+20");
    }
    void axesAreRound() {
        QFETCH(double, low);
        QFETCH(double, high);
        QFETCH(int, most);
        QFETCH(QString, lines);
        const AxisScale scale = axisScale(low, high, most);
        QStringList texts;
        for (int line = scale.first; line <= scale.last; ++line)
            texts.append(plain(axisText(scale, line)));
        QCOMPARE(texts.join(QLatin1Char(' ')), lines);
    }

    // Down to what counts as nothing beside 0.
    void anAxisHoldsAnyValue() {
        for (int exponent = -296; exponent <= 308; exponent += 4) {
            for (const double digits : {1.0, 1.5, 9.99}) {
                const double high = digits * std::pow(10.0, exponent);
                if (!std::isfinite(high))
                    continue;
                for (const double low : {0.0, -high}) {
                    const AxisScale scale = axisScale(low, high, 8);
                    QVERIFY(scale.last - scale.first <= 8 && scale.last > scale.first);
                    QVERIFY(scale.step * scale.last >= high * (1 - 1E-6));
                    QVERIFY(scale.step * scale.first <= low * (1 - 1E-6));
                }
            }
        }
    }

    void valuesReadAsTheyWereSet() {
        QCOMPARE(plain(valueText(1234567)), "1_234_567");
        QCOMPARE(plain(valueText(-1234.5)), "\u22121_234.5");
        QCOMPARE(valueText(static_cast<double>(0.1F)), "0.1");
        QCOMPARE(valueText(-0.0), "0");
        QCOMPARE(valueText(-999), "\u2212999");
    }

    void labelsHaveRoom_data() {
        const test::DataTable<int, int> row("bars", "width");
        for (const int bars : {1, 2, 31, 46, 90})
            for (const int width : {200, 595, 1600})
                row(QByteArray::number(bars) + " in " + QByteArray::number(width), bars, width);
    }
    // Draws the chart for a device that notes every text: none is cut, none meets another, and the
    // labels stand at even distances from the first bar on.
    void labelsHaveRoom() {
        QFETCH(int, bars);
        QFETCH(int, width);
        Chart chart;
        fill(chart, bars, -12345);
        Recorder recorder({width, 300});
        QPainter painter(&recorder);
        painter.setFont(QFont("DejaVu Sans", 9));
        paintChart(painter, {0, 0, width, 300}, chart, ChartColors::lightPaper());
        painter.end();
        std::vector<int> labelled;
        for (std::size_t i = 0; i < recorder.texts.size(); ++i) {
            const auto &one = recorder.texts[i];
            QVERIFY2(QRectF(0, 0, width, 300).contains(one.place), qPrintable(one.text));
            for (std::size_t j = i + 1; j < recorder.texts.size(); ++j)
                QVERIFY2(!one.place.intersects(recorder.texts[j].place), qPrintable(one.text));
            for (int bar = 1; bar <= bars; ++bar) {
                if (chart.DataGrid().RowLabel(bar, 1) == one.text)
                    labelled.push_back(bar);
            }
        }
        QVERIFY(!labelled.empty());
        QCOMPARE(labelled.front(), 1);
        for (std::size_t i = 2; i < labelled.size(); ++i)
            QCOMPARE(labelled[i] - labelled[i - 1], labelled[1] - labelled[0]);
        QCOMPARE(labelled.size() > 1, bars > 1);
    }

    void barsStandOnTheirValues() {
        Chart chart;
        fill(chart, 3);
        chart.DataGrid().SetData(1, 1, 100, 0);
        chart.DataGrid().SetData(2, 1, -50, 0);
        chart.DataGrid().SetData(3, 1, 0, 0);
        QImage image(600, 300, QImage::Format_RGB32);
        QPainter painter(&image);
        const ChartColors colors = ChartColors::lightPaper();
        paintChart(painter, image.rect(), chart, colors);
        const ChartLayout layout =
            layOutChart(QFontMetricsF(painter.font(), &image), image.rect(), chart);
        painter.end();
        const auto barAt = [&](int bar, double value) {
            const QPoint at(qRound(layout.column(bar).center().x()), qRound(layout.y(value)));
            return image.pixelColor(at) == colors.bar;
        };
        QVERIFY(barAt(0, 95) && barAt(0, 5) && !barAt(0, 105) && !barAt(0, -5));
        QVERIFY(barAt(1, -5) && barAt(1, -45) && !barAt(1, -55) && !barAt(1, 5));
        QVERIFY(!barAt(2, 5) && !barAt(2, -5));
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

    void thePictureIsLightAndUnscaled() {
        Chart chart;
        ChartView view(chart);
        fill(chart, 12);
        view.resize(593, 321);
        const QImage light = view.picture();
        QPalette dark;
        dark.setColor(QPalette::Base, Qt::black);
        dark.setColor(QPalette::Text, Qt::white);
        view.setPalette(dark);
        view.setFocus();
        view.markBar(3);
        const QImage picture = view.picture();
        QCOMPARE(picture.size(), QSize(593, 321));
        QCOMPARE(picture.devicePixelRatio(), 1.0);
        QCOMPARE(picture.pixelColor(0, 0), QColor(Qt::white));
        QCOMPARE(picture, light);
        QCOMPARE(view.grab().toImage().pixelColor(3, 3), QColor(Qt::black));
    }

    // Another process each, since a screen's scale is read once.
    void thePictureIsTheSameAtAnyScale() {
        QImage pictures[2];
        for (const int scale : {1, 2}) {
            const QTemporaryDir folder;
            const QString file = folder.filePath("chart.png");
            QProcess process;
            QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
            environment.insert("QT_SCALE_FACTOR", QString::number(scale));
            process.setProcessEnvironment(environment);
            process.start(QCoreApplication::applicationFilePath(), {pictureSwitch(), file});
            QVERIFY(process.waitForFinished());
            QCOMPARE(process.exitCode(), scale);
            pictures[scale - 1] = QImage(file);
        }
        QCOMPARE(pictures[0].size(), QSize(593, 321));
        QCOMPARE(pictures[0], pictures[1]);
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
        view.markBar(3);
        fill(chart, 2); // the marked bar has gone
        QCOMPARE(view.markedBar(), -1);
        fill(chart, 0);
        QCOMPARE(after(Qt::Key_Left), -1);
        QCOMPARE(after(Qt::Key_Home), -1);
        QVERIFY(!view.grab().isNull());
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
        QCOMPARE(table->cellAt(1, 0)->text(QAccessible::Name), "Sep 28");
        QCOMPARE(plain(table->cellAt(1, 1)->text(QAccessible::Name)), "12_345");
        QCOMPARE(face->childCount(), 62);
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

/// Saves a chart's picture for the test that starts this program again; the exit code is the scale.
int savePicture(const QString &file) {
    Chart chart;
    ChartView view(chart);
    fill(chart, 46);
    view.resize(593, 321);
    view.show();
    view.picture().save(file);
    return qRound(view.devicePixelRatioF());
}

int main(int argc, char *argv[]) {
    QApplication app(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.size() == 3 && arguments[1] == pictureSwitch())
        return savePicture(arguments[2]);
    ChartViewTest test;
    return QTest::qExec(&test, argc, argv);
}

#include "chartViewTest.moc"
