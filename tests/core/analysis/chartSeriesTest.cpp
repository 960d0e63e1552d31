// The values of the bars: small cases worked out by hand, random ones against one question to the
// engine for each bar.
#include "analysis/chartSeries.h"

#include "analysis/nodeTag.h"
#include "support/recordTable.h"

#include <QTest>

#include <cmath>
#include <random>

using namespace veltrona;

namespace {

const QString rootTag = QStringLiteral(" ORDER BY campaign");

DateValue date(const char *isoText) {
    return dateOfIsoText(isoText).value();
}

enum MetricIndex { AverageCpc, Clicks = 3, Costs = 6, MaxContentCpc = 8, MaxCpc, Position };

std::vector<double> values(const ChartSeries &series) {
    std::vector<double> list;
    for (const ChartBar &bar : series.bars)
        list.push_back(bar.value);
    return list;
}

ChartRequest days(int metric, const char *start, const char *end, const QString &tag = rootTag) {
    return {.metric = metric, .range = {date(start), date(end)}, .tag = tag};
}

/// One bar by the literal questions.
class Reference {
public:
    Reference(const sqlite::Connection &connection, int metric, const QString &tag)
        : m_connection(connection), m_metric(metric), m_filter(tag.left(tag.indexOf(" ORDER "))) {}

    double value(const ChartSeries &series, std::size_t i) const {
        static const char *expressions[] = {"sum(cpc/1000000.0)",
                                            "sum(Budget/1000000.0)",
                                            "sum(ctr)",
                                            "sum(Clicks)",
                                            "sum(conv)",
                                            "sum(convCost)",
                                            "sum(cost/1000000.0)",
                                            "sum(Impressions)",
                                            "sum(MaxContentCpc)",
                                            "sum(MaxCpc/10000000.0)",
                                            "sum(pos)",
                                            "sum(Transactions)"};
        QString extra;
        if (m_metric == MaxContentCpc)
            extra = "MaxContentCpc > 0 AND ";
        if (m_metric == MaxCpc)
            extra = "MaxCpc > 0 AND ";
        const QString upTo = isoText(series.bars[i].toDay);
        const QString period = i == 0 ? "googleDate = '" + upTo + "' "
                                      : "googleDate > '" + isoText(series.bars[i - 1].toDay) +
                                            "' AND googleDate <= '" + upTo + "' ";
        const float sum = ask(expressions[m_metric], extra + period);
        if (m_metric != AverageCpc && m_metric != Position)
            return rounded(sum);
        const float count =
            ask("COUNT(*)", (m_metric == AverageCpc ? "cpc <> 0 AND " : "pos <> 0 AND ") + period);
        return sum != 0 && count != 0 ? rounded(sum / count) : 0;
    }

private:
    float ask(const char *expression, const QString &condition) const {
        sqlite::Statement statement = m_connection.prepare(
            ("SELECT " + QString(expression) + " FROM tblGoogleDays WHERE " + condition + m_filter)
                .toStdString());
        return statement.step() ? static_cast<float>(statement.real(0)) : 0;
    }
    static double rounded(float number) {
        return std::nearbyint(static_cast<double>(number) * 100) / 100;
    }

    const sqlite::Connection &m_connection;
    int m_metric;
    QString m_filter;
};

const QStringList hostileNames = {"plain",           "O'Neil",   "'; DELETE FROM tblGoogleDays; --",
                                  "campaign='plain", "Äpfel 靴", "' OR '1'='1"};

void insertRandom(test::RecordTable &table, std::mt19937 &random, int records) {
    const auto number = [&](int below) { return static_cast<int>(random() % below); };
    table.connection().execute("BEGIN");
    for (int i = 0; i < records; ++i) {
        // Half of the first campaign's rest, so that nodes of all sizes arise.
        const int campaign = number(2) ? 0 : number(static_cast<int>(hostileNames.size()));
        const int day = 39083 + number(3) * number(400);
        const int second = number(4) == 0 ? number(86400) : 0;
        table.insert({{"Campaign", hostileNames[campaign]},
                      {"Adgroup", hostileNames[number(3)]},
                      {"KeyWord", hostileNames[number(2)]},
                      {"AdwordsTyp", number(3) ? "Search Only" : "Content Only"},
                      {"GoogleDate", isoText(dateValue(calendarDay(day), second))},
                      {"cpc", number(3) * number(2'000'000)},
                      {"Budget", number(90'000'000)},
                      {"ctr", number(1000) / 64.0},
                      {"Clicks", number(50)},
                      {"conv", number(3)},
                      {"ConvCost", number(9000) / 8.0},
                      {"cost", number(30'000'000)},
                      {"Impressions", number(90'000)},
                      {"MaxContentCpc", number(3) * 10'000 - 10'000},
                      {"MaxCpc", number(3) * 50'000 - 50'000},
                      {"Pos", number(2) * number(90) / 8.0},
                      {"Transactions", number(4)}});
    }
    table.connection().execute("COMMIT");
}

} // namespace

class ChartSeriesTest : public QObject {
    Q_OBJECT
private slots:
    void metrics_data();
    void metrics();
    void averagesLeaveOutZeros();
    void conditionsOfTheMaxima();
    void rounding_data();
    void rounding();
    void orderOfRecordsDoesNotShow();
    void hugeNumbers();
    void timesOfDayBelongToTheNextBar();
    void nodes();
    void allDates();
    void unreadableDate();
    void randomRecords();
    void shown();
};

void ChartSeriesTest::metrics_data() {
    QTest::addColumn<double>("value");
    const double values[] = {1.25, 60, 2.5, 7, 3, 4.75, 9.5, 800, 40'000, 0.05, 1.5, 2};
    const QStringList captions = {"Average Cost Per Click",
                                  "Budget",
                                  "Click Through Rate",
                                  "Clicks",
                                  "Conversions",
                                  "Cost Per Conversion",
                                  "Costs",
                                  "Impressions",
                                  "Max Content CPC",
                                  "Max CPC",
                                  "Position",
                                  "Transactions"};
    QCOMPARE(chartMetrics(), captions);
    QCOMPARE(chartGroupings(), (QStringList{"Days", "Weeks", "Months"}));
    for (int i = 0; i < captions.size(); ++i)
        QTest::newRow(qPrintable(captions[i])) << values[i];
}

void ChartSeriesTest::metrics() {
    QFETCH(const double, value);
    test::RecordTable table;
    table.insert({{"GoogleDate", "2007-05-14"},
                  {"cpc", 1'250'000},
                  {"Budget", 60'000'000},
                  {"ctr", 2.5},
                  {"Clicks", 7},
                  {"conv", 3},
                  {"ConvCost", 4.75},
                  {"cost", 9'500'000},
                  {"Impressions", 800},
                  {"MaxContentCpc", 40'000},
                  {"MaxCpc", 500'000},
                  {"Pos", 1.5},
                  {"Transactions", 2}});
    const auto metric = static_cast<int>(chartMetrics().indexOf(QTest::currentDataTag()));
    const ChartSeries series =
        queryChartSeries(table.connection(), days(metric, "2007-05-13", "2007-05-15"));
    QCOMPARE(values(series), (std::vector<double>{0, value, 0}));
    QCOMPARE(series.metric, QTest::currentDataTag());
}

void ChartSeriesTest::averagesLeaveOutZeros() {
    test::RecordTable table;
    for (const int cpc : {1'000'000, 0, 2'000'000})
        table.insert({{"GoogleDate", "2007-05-14"}, {"cpc", cpc}, {"Pos", cpc / 800'000.0}});
    table.insert({{"GoogleDate", "2007-05-15"}, {"Clicks", 5}});
    for (const int cpc : {500'000, -500'000})
        table.insert({{"GoogleDate", "2007-05-16"}, {"cpc", cpc}, {"Pos", cpc / 1e6}});
    const auto ask = [&](int metric) {
        return values(
            queryChartSeries(table.connection(), days(metric, "2007-05-14", "2007-05-16")));
    };
    QCOMPARE(ask(AverageCpc), (std::vector<double>{1.5, 0, 0}));
    QCOMPARE(ask(Position), (std::vector<double>{1.88, 0, 0})); // 1.875, a tie
}

void ChartSeriesTest::conditionsOfTheMaxima() {
    test::RecordTable table;
    for (const int value : {-20'000'000, 0, 30'000'000})
        table.insert({{"GoogleDate", "2007-05-14"}, {"MaxCpc", value}, {"MaxContentCpc", value}});
    const auto ask = [&](int metric) {
        return queryChartSeries(table.connection(), days(metric, "2007-05-14", "2007-05-14"))
            .bars.front()
            .value;
    };
    QCOMPARE(ask(MaxCpc), 3.0);
    QCOMPARE(ask(MaxContentCpc), 30'000'000.0);
}

void ChartSeriesTest::rounding_data() {
    QTest::addColumn<qint64>("cost");
    QTest::addColumn<double>("value");
    // As 32-bit floats, so that 1.135 lies below its tie.
    QTest::newRow("tie to even below") << qint64(1'125'000) << 1.12;
    QTest::newRow("tie to even above") << qint64(1'375'000) << 1.38;
    QTest::newRow("just above a tie") << qint64(1'115'000) << 1.12;
    QTest::newRow("just below a tie") << qint64(1'135'000) << 1.13;
    QTest::newRow("seven digits") << qint64(123'456'789'012) << 123456.79;
    QTest::newRow("beyond 24 bits") << qint64(16'777'217'000'000) << 16777216.0;
    QTest::newRow("negative") << qint64(-1'125'000) << -1.12;
    QTest::newRow("no negative zero") << qint64(-1) << 0.0;
}

void ChartSeriesTest::rounding() {
    QFETCH(const qint64, cost);
    QFETCH(const double, value);
    test::RecordTable table;
    table.insert({{"GoogleDate", "2007-05-14"}, {"cost", cost}});
    const auto series =
        queryChartSeries(table.connection(), days(Costs, "2007-05-14", "2007-05-14"));
    QCOMPARE(series.bars.front().value, value);
    QCOMPARE(std::signbit(series.bars.front().value), std::signbit(value));
}

void ChartSeriesTest::orderOfRecordsDoesNotShow() {
    std::vector<double> clicks = {1e16, 1, -1e16, 0.25};
    std::sort(clicks.begin(), clicks.end());
    do {
        test::RecordTable table;
        for (const double value : clicks)
            table.insert({{"GoogleDate", "2007-05-14"}, {"Clicks", value}});
        const auto series =
            queryChartSeries(table.connection(), days(Clicks, "2007-05-14", "2007-05-14"));
        QCOMPARE(series.bars.front().value, 1.25);
    } while (std::next_permutation(clicks.begin(), clicks.end()));
}

void ChartSeriesTest::hugeNumbers() {
    test::RecordTable table;
    table.insert({{"GoogleDate", "2007-05-14"}, {"Clicks", 1e300}});
    for (int i = 0; i < 2; ++i)
        table.insert({{"GoogleDate", "2007-05-15"}, {"Clicks", -1.7e308}});
    for (int i = 0; i < 2; ++i)
        table.insert(
            {{"GoogleDate", "2007-05-16"}, {"Clicks", std::numeric_limits<qint64>::max()}});
    const auto bars =
        queryChartSeries(table.connection(), days(Clicks, "2007-05-14", "2007-05-16")).bars;
    constexpr double largest = std::numeric_limits<float>::max();
    QCOMPARE(bars[0].value, largest);
    QCOMPARE(bars[1].value, -largest);
    QCOMPARE(bars[2].value, std::ldexp(1.0, 64));
}

void ChartSeriesTest::timesOfDayBelongToTheNextBar() {
    test::RecordTable table;
    int clicks = 1;
    for (const char *text :
         {"2007-05-13 23:59:59", "2007-05-14", "2007-05-14 00:00:01", "2007-05-15",
          "2007-05-15 10:00:00", "2007-05-16", "2007-05-16 08:00:00"}) {
        table.insert({{"GoogleDate", text}, {"Clicks", clicks}});
        clicks *= 10;
    }
    ChartRequest request = days(Clicks, "2007-05-14", "2007-05-16");
    request.range.start += 0.9; // the boundaries have no time of day
    request.range.end += 0.1;
    QCOMPARE(values(queryChartSeries(table.connection(), request)),
             (std::vector<double>{10, 1100, 110'000}));
}

void ChartSeriesTest::nodes() {
    test::RecordTable table;
    const auto add = [&](const QString &campaign, const QString &branch, const QString &keyword,
                         int clicks) {
        table.insert({{"GoogleDate", "2007-05-14"},
                      {"Campaign", campaign},
                      {"Adgroup", "g"},
                      {"AdwordsTyp", branch},
                      {"KeyWord", keyword},
                      {"Clicks", clicks}});
    };
    const QString hostile = "x' ORDER BY campaign='y";
    add(hostile, "Search Only", "a", 1);
    add(hostile, "Search Only", "A", 2);
    add(hostile, "Content Only", "a", 4);
    add("other", "Search Only", "a", 8);
    const QString campaign = " AND campaign='" + doubledApostrophes(hostile) + "'";
    const auto clicks = [&](const QString &tag) {
        return queryChartSeries(table.connection(), days(Clicks, "2007-05-14", "2007-05-14", tag))
            .bars.front()
            .value;
    };
    QCOMPARE(clicks(rootTag), 15.0);
    QCOMPARE(clicks(campaign + " ORDER BY adGroup"), 7.0);
    const QString adGroup = campaign + " AND adGroup='g'";
    QCOMPARE(clicks(adGroup + " AND adWordsTyp='Content Only' ORDER BY Keyword"), 4.0);
    QCOMPARE(clicks(adGroup + " AND adWordsTyp='Search Only' AND Keyword='a' ORDER BY kwType"),
             1.0);
}

void ChartSeriesTest::allDates() {
    test::RecordTable table;
    ChartRequest request = days(Clicks, "1989-01-01", "2032-01-01");
    request.allDates = true;
    QCOMPARE(queryChartSeries(table.connection(), request).range, request.range);

    table.insert({{"GoogleDate", "2007-05-14 10:00:00"}, {"Campaign", "a"}, {"Clicks", 1}});
    table.insert({{"GoogleDate", "2007-05-16"}, {"Campaign", "b"}, {"Clicks", 2}});
    table.insert({{"GoogleDate", "2007-05-18"}, {"Campaign", "a"}, {"Clicks", 4}});
    request.tag = " AND campaign='b' ORDER BY adGroup";
    const ChartSeries series = queryChartSeries(table.connection(), request);
    QCOMPARE(series.range, (DateRange{date("2007-05-14 10:00:00"), date("2007-05-18")}));
    QCOMPARE(values(series), (std::vector<double>{0, 0, 2, 0, 0}));
}

void ChartSeriesTest::unreadableDate() {
    test::RecordTable table;
    table.insert({{"GoogleDate", "yesterday"}, {"Clicks", 1}});
    ChartRequest request = days(Clicks, "2007-05-14", "2007-05-15");
    QCOMPARE(values(queryChartSeries(table.connection(), request)), (std::vector<double>{0, 0}));
    request.allDates = true;
    QVERIFY_EXCEPTION_THROWN(queryChartSeries(table.connection(), request), Failure);
}

void ChartSeriesTest::randomRecords() {
    std::mt19937 random(20070514);
    test::RecordTable table;
    insertRandom(table, random, 4000);
    int bars = 0;
    for (int round = 0; round < 240; ++round) {
        const QString campaign =
            " AND campaign='" + doubledApostrophes(hostileNames[random() % 6]) + "'";
        const QString adGroup = " AND adGroup='" + doubledApostrophes(hostileNames[random() % 3]) +
                                "' AND adWordsTyp='Search Only'";
        const QString keyword =
            " AND Keyword='" + doubledApostrophes(hostileNames[random() % 2]) + "'";
        const QString tags[] = {"", campaign, campaign + adGroup, campaign + adGroup + keyword};
        ChartRequest request;
        request.metric = round % 12;
        request.grouping = static_cast<int>(random() % 3);
        request.range.start = 39000 + static_cast<int>(random() % 400) + random() % 8 / 8.0;
        request.range.end = request.range.start + static_cast<int>(random() % 900) - 20;
        request.allDates = random() % 8 == 0;
        request.tag = tags[random() % 4] + " ORDER BY Keyword";
        const ChartSeries series = queryChartSeries(table.connection(), request);
        const Reference reference(table.connection(), request.metric, request.tag);
        for (std::size_t i = 0; i < series.bars.size(); ++i, ++bars)
            QCOMPARE(series.bars[i].value, reference.value(series, i));
    }
    QVERIFY(bars > 5000);
}

void ChartSeriesTest::shown() {
    Chart chart;
    chart.setRowCount(50);
    int changes = 0;
    chart.onChange = [&] { ++changes; };
    ChartSeries series;
    series.metric = "Costs";
    series.bars = emptyBars({ChartUnit::Week, 2, 1}, date("2006-12-31"));
    series.bars[1].value = 12.5;
    showSeries(series, chart);
    QCOMPARE(changes, 1);
    QCOMPARE(chart.RowCount(), 2);
    QCOMPARE(chart.SeriesName(), "Costs");
    const std::vector<ChartRow> &rows = chart.DataGrid().rows();
    QCOMPARE(rows[0].label, "2006 53");
    QCOMPARE(rows[0].dates, "31 Dec 2006");
    QCOMPARE(rows[1].dates, QString::fromUtf8("1 Jan 2007 – 7 Jan 2007"));
    QCOMPARE(rows[1].value, 12.5);
    QVERIFY(!rows[0].isNull && !rows[1].isNull);
}

QTEST_GUILESS_MAIN(ChartSeriesTest)
#include "chartSeriesTest.moc"
