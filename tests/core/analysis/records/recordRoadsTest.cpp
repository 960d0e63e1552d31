// Tree, grid, colours and bars of hostile projects: the records in memory and SQLite have to
// give the same, bit by bit, whoever has changed the file in between; the bars are also asked for
// one by one.
#include "core/analysis/chart/chartSeries.h"
#include "core/analysis/grid/lossMarks.h"
#include "core/analysis/grid/nodeStatistics.h"
#include "core/analysis/grid/statisticsGrid.h"
#include "core/analysis/records/nodePath.h"
#include "core/analysis/records/recordWalk.h"
#include "core/analysis/tree/navigationTree.h"
#include "core/base/text.h"
#include "core/database/projectFile.h"
#include "support/dataTable.h"
#include "support/recordTable.h"

#include <QTest>

#include <bit>
#include <cmath>
#include <random>

using namespace veltrona;

namespace {

const QStringList names = {
    "Shop", "shop", "Shop ", "O'Neil", "Shöp", "Sho", "", "' OR 1", QString("a") + QChar(0) + "b"};
const QStringList kinds = {"Search Only", "Content Only", "search only", ""};
const QStringList texts = {"12 of 9", "7.25%", "n/a", "-3e1x", "%4", "1E999"};
constexpr int firstDay = 39083;

enum Metric { AverageCpc, MaxContentCpc = 8, MaxCpc, Position };

/// One bar by the literal questions.
class Reference {
public:
    Reference(const sqlite::Connection &connection, int metric, const NodePath &path)
        : m_connection(connection), m_metric(metric) {
        for (qsizetype i = 0; i < std::min<qsizetype>(path.names.size(), 4); ++i)
            m_filter += QStringLiteral(" AND %1='%2'")
                            .arg(nameColumns[static_cast<std::size_t>(i)],
                                 QString(path.names[i]).replace("'", "''"));
    }

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

enum class Numbers { OfReports, Any, AndOddities };

class Roads {
public:
    Roads() : m_columns(table.connection()), m_stored(table.connection(), 0) {}

    int below(int limit) { return static_cast<int>(random() % static_cast<unsigned>(limit)); }

    /// Of one kind in most columns, as in real reports; which ones changes with each insert.
    QVariant number(std::size_t figure) {
        switch ((figure + m_inserts) % 4) {
        case 0:
            return below(257) - 9;
        case 1:
            return (below(100'000) - 9000) / 100.0;
        case 2:
            return below(9) / 7.0;
        default:
            return anyNumber();
        }
    }

    QVariant anyNumber() {
        switch (below(numbers == Numbers::AndOddities ? 12 : 6)) {
        case 0:
            return 0;
        case 1:
            return below(300);
        case 2:
            return below(100'000'000) - 20'000'000;
        case 3: // decimals of every length
            return (below(2'000'000'000) - 1'000'000'000) / std::pow(10.0, below(13));
        case 4:
            return below(1000) / 100.0;
        case 5:
            return below(9) / 7.0;
        case 6:
            return std::bit_cast<double>(random() >> 2 | 1); // any below 2
        case 7:
            return 1E308;
        case 8:
            return qlonglong(999'999'999'999'998) + below(4);
        case 9:
            return qlonglong(-9'007'199'254'740'993) - below(9);
        default:
            return texts[below(static_cast<int>(texts.size()))];
        }
    }

    /// As reports have them, up to what all the records may come to: a sum has 15 digits.
    QVariant reportNumber(std::size_t figure) {
        switch ((figure + m_inserts) % 3) {
        case 0:
            return below(3) ? 0 : below(300);
        case 1:
            return below(100'000) / 100.0;
        default:
            return static_cast<double>(random() % most) /
                   std::pow(10.0, static_cast<double>(2 + figure % 7));
        }
    }

    void insert(int records) {
        ++m_inserts;
        table.connection().execute("BEGIN");
        for (int i = 0; i < records; ++i) {
            const int second = below(3) ? 0 : below(2) ? below(86400) : 86399;
            std::map<std::string, QVariant> values{
                {"Campaign", below(3) ? names[0] : names[below(9)]},
                {"Adgroup", names[below(9)]},
                {"KeyWord", names[below(4)]},
                {"kwType", names[below(2)]},
                {"AdwordsTyp", kinds[below(4)]},
                {"GoogleDate", isoText(dateValue(calendarDay(firstDay + below(60)), second))}};
            for (std::size_t figure = 0; figure < figureColumns.size(); ++figure)
                values.emplace(figureColumns[figure], numbers == Numbers::OfReports
                                                          ? reportNumber(figure)
                                                          : number(figure));
            table.insert(std::move(values));
        }
        table.connection().execute("COMMIT");
    }

    /// Asks both roads about some nodes, periods and metrics.
    void compare(int questions) {
        for (int i = 0; i < questions; ++i) {
            const NodePath path{QStringList{names[below(9)], names[below(9)], kinds[below(4)],
                                            names[below(4)], names[below(2)]}
                                    .first(i % 6)};
            ChartRequest request{i % 12, below(3), {}, below(6) == 0, path};
            request.range.start = firstDay + below(60) + below(8) / 8.0;
            request.range.end = request.range.start + below(3) * below(400);
            compareGrids(path, request.range);
            compareBars(request);
            compareLeaves(request.range);
        }
        compareTrees();
    }

    /// Reads some of the records ahead; false if no more are left.
    bool readSlice() {
        return m_columns.readAhead([this] { return below(4) == 0; });
    }
    /// The records in memory, without reading them anew.
    const RecordColumns *held() { return m_columns.held(); }
    bool sumsAreExact() {
        constexpr std::array some = {Figure::Clicks, Figure::Cost, Figure::ConvValue};
        return !m_columns.read()->exactScales(some).empty();
    }
    bool canBeHeld() { return m_columns.read() != nullptr; }

    test::RecordTable table;
    std::mt19937_64 random{20070514};
    Numbers numbers = Numbers::AndOddities;
    quint64 most = 1'000'000'000'000; // of OfReports, as whole numbers

private:
    void compareTrees() {
        QStringList keys[2];
        for (int i = 0; i < 2; ++i) {
            Tree tree;
            buildNavigationTree(i ? m_stored : m_columns, QString(), tree);
            for (int item = 1; item <= tree.Nodes().Count(); ++item)
                keys[i] += tree.Nodes().Item(item)->Key();
        }
        QCOMPARE(keys[0], keys[1]);
    }
    void compareGrids(const NodePath &path, const DateRange &range) {
        Grid grids[] = {Grid(gridColumn::Count), Grid(gridColumn::Count)};
        NodeStatistics statistics[2];
        for (int i = 0; i < 2; ++i) {
            statistics[i] = queryNodeStatistics(i ? m_stored : m_columns, path, range);
            initGrid(grids[i], true);
            fillGrid(statistics[i], grids[i], true);
            if (!statistics[i].rows.empty())
                sumUp(grids[i], true);
        }
        QCOMPARE(bits(statistics[0]), bits(statistics[1]));
        QCOMPARE(grids[0].Rows(), grids[1].Rows());
        for (int row = 0; row < grids[0].Rows(); ++row) {
            for (int col = 0; col < gridColumn::Count; ++col) {
                QCOMPARE(grids[0].TextMatrix(row, col), grids[1].TextMatrix(row, col));
                QCOMPARE(grids[0].cellColor(row, col), grids[1].cellColor(row, col));
            }
        }
    }
    void compareBars(const ChartRequest &request) {
        const ChartSeries ours = queryChartSeries(m_columns, request);
        const ChartSeries theirs = queryChartSeries(m_stored, request);
        QCOMPARE(ours.range, theirs.range);
        QCOMPARE(ours.bars.size(), theirs.bars.size());
        const Reference reference(table.connection(), request.metric, request.path);
        for (std::size_t bar = 0; bar < ours.bars.size(); ++bar) {
            QCOMPARE(std::bit_cast<quint64>(ours.bars[bar].value),
                     std::bit_cast<quint64>(theirs.bars[bar].value));
            if (numbers != Numbers::AndOddities && !request.path.names.contains(names.last()))
                QCOMPARE(ours.bars[bar].value, reference.value(ours, bar));
        }
    }
    void compareLeaves(const DateRange &range) {
        std::map<std::string, std::pair<quint64, quint64>> sums[2];
        for (int i = 0; i < 2; ++i) {
            visitLeafSums(i ? m_stored : m_columns, range,
                          [&](const auto &leaf, const LossSums &each) {
                              std::string name;
                              for (const std::string_view part : leaf)
                                  name.append(part).append("|");
                              sums[i][name] = {std::bit_cast<quint64>(each.cost),
                                               std::bit_cast<quint64>(each.conversionValue)};
                          });
        }
        QVERIFY(sums[0] == sums[1]);
    }
    static QStringList bits(const NodeStatistics &statistics) {
        QStringList lines{statistics.heading};
        for (const StatisticsRow &row : statistics.rows) {
            lines += row.name;
            for (const double sum : row.sums.values)
                lines += QString::number(std::bit_cast<quint64>(sum), 16);
        }
        return lines;
    }

    ProjectRecords m_columns;
    ProjectRecords m_stored;
    std::size_t m_inserts = 0;
};

} // namespace

class RecordRoadsTest : public QObject {
    Q_OBJECT
private slots:
    void bothRoadsAgree_data() {
        const test::DataTable<Numbers> row;
        row("numbers of reports", Numbers::OfReports);
        row("numbers", Numbers::Any);
        row("texts, huge and tiny numbers too", Numbers::AndOddities);
    }
    void bothRoadsAgree() {
        const auto [numbers] = test::row<Numbers>();
        Roads roads;
        roads.numbers = numbers;
        roads.compare(5); // nothing yet
        for (int batch = 0; batch < 4; ++batch) {
            roads.insert(400);
            QCOMPARE(roads.held() != nullptr, batch > 0); // the others stayed
            roads.compare(25);
            QCOMPARE(roads.sumsAreExact(), numbers == Numbers::OfReports);
        }
        roads.table.connection().execute("UPDATE tblGoogleDays SET Adgroup = "
                                         "CAST(x'53FF' AS TEXT) WHERE GoogleDayId % 17 = 0");
        roads.compare(15);
    }

    /// A sum of 16 digits, or a text in one of its columns, is rounded on the way.
    void exactSumsHaveTheirLimits() {
        Roads roads;
        roads.numbers = Numbers::OfReports;
        for (const quint64 most : {roads.most, 1000 * roads.most, quint64(1)}) {
            roads.most = most;
            roads.insert(300);
            roads.compare(12);
        }
        QVERIFY(!roads.sumsAreExact());
        roads.table.connection().execute("DELETE FROM tblGoogleDays WHERE GoogleDayId > 300");
        QVERIFY(roads.sumsAreExact());
        roads.table.connection().execute("UPDATE tblGoogleDays SET Clicks = '12 of 9' WHERE "
                                         "GoogleDayId = 9");
        roads.compare(12);
    }

    void changesBetweenTwoQuestions() {
        Roads roads;
        auto other = openProject(roads.table.connection().path());
        const std::pair<const char *, std::function<void()>> changes[] = {
            {"a second program's record",
             [&] {
                 other->execute("INSERT INTO tblGoogleDays (Campaign, GoogleDate, cost) VALUES "
                                "('Shop', '2007-01-09', 5)");
             }},
            {"a second program's record between two of our batches",
             [&] {
                 roads.insert(3);
                 other->execute("INSERT INTO tblGoogleDays (Campaign, GoogleDate, cost) VALUES "
                                "('shop', '2007-01-10', 5)");
                 roads.insert(3);
             }},
            {"a second program's correction",
             [&] { other->execute("UPDATE tblGoogleDays SET cost = 7 WHERE Campaign = 'Shop'"); }},
            {"records numbered from below zero",
             [&] { other->execute("UPDATE tblGoogleDays SET GoogleDayId = GoogleDayId - 9"); }},
            {"a clean and as many records",
             [&] {
                 const auto records = static_cast<int>(roads.held()->size());
                 cleanProject(roads.table.connection());
                 roads.insert(records);
             }},
            {"records that were taken back",
             [&] {
                 sqlite::Transaction transaction(roads.table.connection());
                 roads.table.connection().execute("DELETE FROM tblGoogleDays WHERE cost > 0");
             }},
        };
        roads.insert(200);
        for (const auto &[what, change] : changes) {
            QVERIFY2(roads.canBeHeld(), what);
            change();
            QVERIFY2(!roads.held(), what);
            roads.compare(12);
        }
        cleanProject(roads.table.connection());
        roads.compare(5);
    }

    /// They end anywhere, and another program or a question may come in between.
    void slices() {
        Roads roads;
        auto other = openProject(roads.table.connection().path());
        const char *const commits[] = {
            "UPDATE tblGoogleDays SET cost = cost + 1 WHERE GoogleDayId % 5 = 0",
            "DELETE FROM tblGoogleDays WHERE GoogleDayId % 11 = 0",
            "INSERT INTO tblGoogleDays (Campaign, GoogleDate, CreativeId) SELECT 'Shop', "
            "'2007-01-09', -max(GoogleDayId) FROM tblGoogleDays"};
        for (int round = 0; round < 12; ++round) {
            roads.insert(200);
            other->execute(commits[round % 3]);
            bool isMore = true;
            for (int left = roads.below(40); isMore && left > 0; --left) {
                isMore = roads.readSlice();
                if (isMore && left > 20 && roads.below(4) == 0)
                    other->execute(commits[roads.below(3)]);
            }
            QCOMPARE(roads.held() == nullptr, isMore);
            roads.compare(4);
            QVERIFY(roads.canBeHeld());
            QCOMPARE(static_cast<qint64>(roads.held()->size()),
                     roads.table.connection().number("SELECT count(*) FROM tblGoogleDays"));
        }
    }

    void whatCantBeHeldIsReadFromSqlite() {
        Roads roads;
        roads.insert(300);
        ProjectRecords narrow(roads.table.connection(), 20'000);
        QVERIFY(!narrow.read());
        QVERIFY(!narrow.readAhead({}) && !narrow.held());
        roads.table.connection().execute("DELETE FROM tblGoogleDays WHERE GoogleDayId > 20");
        QVERIFY(narrow.read());

        roads.table.connection().execute("UPDATE tblGoogleDays SET GoogleDate = x'32303037' WHERE "
                                         "GoogleDayId = 9");
        QVERIFY(!roads.canBeHeld());
        roads.table.connection().execute("UPDATE tblGoogleDays SET GoogleDate = '2007-01-09', "
                                         "Campaign = x'53686F70' WHERE GoogleDayId = 9");
        roads.compare(12);
        QVERIFY(!roads.canBeHeld());
    }

    void fewRecordsGoByTheIndex() {
        Roads roads;
        roads.insert(640);
        ProjectRecords records(roads.table.connection());
        const DateValue day = firstDay + 7;
        queryNodeStatistics(records, {}, {day, day});
        QVERIFY(!records.held());
        queryNodeStatistics(records, {}, {day, day + 20});
        QVERIFY(records.held());
    }
};

QTEST_GUILESS_MAIN(RecordRoadsTest)
#include "recordRoadsTest.moc"
