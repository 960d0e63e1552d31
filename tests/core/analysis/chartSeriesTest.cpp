// The values of the bars of random records, against one question to the engine for each bar.
#include "core/analysis/chartSeries.h"

#include "core/analysis/nodeTag.h"
#include "support/recordTable.h"

#include <QTest>

#include <cmath>
#include <random>

using namespace veltrona;

namespace {

enum Metric { AverageCpc, MaxContentCpc = 8, MaxCpc, Position };

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
    const auto number = [&](unsigned below) { return static_cast<int>(random() % below); };
    table.connection().execute("BEGIN");
    for (int i = 0; i < records; ++i) {
        // Half of the first campaign's rest, so that nodes of all sizes arise.
        const int campaign = number(2) ? 0 : number(6);
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
                      {"Clicks", number(50) - 5},
                      {"conv", number(3) - 1},
                      {"ConvCost", number(9000) / 8.0},
                      {"cost", number(30'000'000)},
                      {"Impressions", number(90'000) - 9000},
                      {"MaxContentCpc", number(3) * 10'000 - 10'000},
                      {"MaxCpc", number(3) * 50'000 - 50'000},
                      {"Pos", number(2) * number(90) / 8.0},
                      {"Transactions", number(4) - 1}});
    }
    table.connection().execute("COMMIT");
}

} // namespace

class ChartSeriesTest : public QObject {
    Q_OBJECT
private slots:
    void randomRecords() {
        std::mt19937 random(20070514);
        const auto number = [&](unsigned below) { return static_cast<int>(random() % below); };
        test::RecordTable table;
        insertRandom(table, random, 2000);
        ProjectRecords records(table.connection());
        int bars = 0;
        for (int round = 0; round < 120; ++round) {
            const QString campaign =
                " AND campaign='" + doubledApostrophes(hostileNames[number(6)]) + "'";
            const QString adGroup = " AND adGroup='" + doubledApostrophes(hostileNames[number(3)]) +
                                    "' AND adWordsTyp='Search Only'";
            const QString keyword =
                " AND Keyword='" + doubledApostrophes(hostileNames[number(2)]) + "'";
            const QString tags[] = {"", campaign, campaign + adGroup, campaign + adGroup + keyword};
            ChartRequest request;
            request.metric = round % 12;
            request.grouping = number(3);
            request.range.start = 39000 + number(400) + number(8) / 8.0;
            request.range.end = request.range.start + number(900) - 20;
            request.allDates = random() % 8 == 0;
            request.tag = tags[random() % 4] + " ORDER BY Keyword";
            const ChartSeries series = queryChartSeries(records, request);
            const Reference reference(table.connection(), request.metric, request.tag);
            for (std::size_t i = 0; i < series.bars.size(); ++i, ++bars)
                QCOMPARE(series.bars[i].value, reference.value(series, i));
        }
        QVERIFY(bars > 2500);
    }
};

QTEST_GUILESS_MAIN(ChartSeriesTest)
#include "chartSeriesTest.moc"
