// The shape of the statistics grid and the finish that sumUp gives it, on cells written by hand.
#include "analysis/statisticsGrid.h"
#include "analysis/summary.h"

#include <QTest>

#include <cmath>
#include <numeric>

using namespace veltrona;

namespace {

QString rowText(const Grid &grid, int row) {
    QStringList texts;
    for (int col = 0; col < grid.Cols(); ++col)
        texts += grid.TextMatrix(row, col);
    return texts.join('|');
}

/// A grid with raw sums, each row 15 texts between bars; `before` may hold what an earlier refresh
/// left.
void pour(Grid &grid, const QStringList &rows) {
    removeDataRows(grid);
    for (const QString &row : rows) {
        grid.AddItem(QString(), grid.Rows() - 2);
        const QStringList texts = row.split('|');
        for (int col = 0; col < texts.size(); ++col)
            grid.setTextMatrix(grid.Rows() - 3, col, texts.at(col));
    }
}

QStringList texts(const Grid &grid) {
    QStringList rows;
    for (int row = 1; row < grid.Rows(); ++row)
        rows += rowText(grid, row);
    return rows;
}

const QString spacer(14, '|');
const QString earned = "a|1|1|0%|0|2|0|0%||0|3|50%|0||";
const QString lost = "b|1|1|0%|0|2|0|0%||0|1|-50%|0||";
const QString even = "c|1|1|0%|0|2|0|0%||0|2|0%|0||";

} // namespace

class StatisticsGridTest : public QObject {
    Q_OBJECT
private slots:
    void initLeavesNothingButTheSummaryColor();
    void columnWidths_data();
    void columnWidths();
    void sizesOneColumnOrAll();
    void measuresTheShapesOfNumbers_data();
    void measuresTheShapesOfNumbers();
    void summary_data();
    void summary();
    void colors_data();
    void colors();
    void colorsSurviveUntilCleared();
    void viewSeesFinishedGridsOnly();
};

void StatisticsGridTest::initLeavesNothingButTheSummaryColor() {
    Grid grid(gridColumn::Count);
    initGrid(grid, true);
    pour(grid, {lost, lost, earned, earned, earned, earned});
    sumUp(grid, true);
    QCOMPARE(grid.cellColor(2, 0), red);
    initGrid(grid, false);
    QCOMPARE(texts(grid), QStringList({spacer, spacer}));
    QCOMPARE(grid.ForeColor(), black);
    QCOMPARE(grid.cellColor(1, 0), black);
    QCOMPARE(grid.cellColor(2, 0), green);
}

void StatisticsGridTest::columnWidths_data() {
    QTest::addColumn<float>("widest");
    QTest::addColumn<int>("width");
    QTest::newRow("narrow") << 12.f << 890;
    QTest::newRow("just narrow") << 779.75f << 890;
    QTest::newRow("not narrow") << 780.f << 900;
    QTest::newRow("tie down") << 1000.5f << 1120;
    QTest::newRow("tie up") << 1001.5f << 1122;
    // The sum with 120 is a 32-bit float too: above 2^23 it has no halves.
    QTest::newRow("float") << 8388607.5f << 8388728;
}

void StatisticsGridTest::columnWidths() {
    QFETCH(float, widest);
    Grid grid(gridColumn::Count);
    initGrid(grid, false);
    grid.setTextMatrix(1, 3, "widest");
    sizeColumns(grid, -1, [&](const QString &text) { return text == "widest" ? widest : 1.f; });
    QTEST(grid.ColWidth(3), "width");
    QCOMPARE(grid.ColWidth(4), 890);
}

void StatisticsGridTest::sizesOneColumnOrAll() {
    Grid grid(gridColumn::Count);
    initGrid(grid, false);
    sizeColumns(grid, 3, [](const QString &) { return 880.f; });
    QCOMPARE(grid.ColWidth(3), 1000);
    QCOMPARE(grid.ColWidth(2), -1);
    for (const int col : {-1, 15, -2}) {
        sizeColumns(grid, col, [=](const QString &) { return 1000.f + static_cast<float>(col); });
        QCOMPARE(grid.ColWidth(0), 1120 + col);
        QCOMPARE(grid.ColWidth(12), 1120 + col);
        QCOMPARE(grid.ColWidth(13), 0);
        QCOMPARE(grid.ColWidth(14), 0);
    }
}

void StatisticsGridTest::measuresTheShapesOfNumbers_data() {
    QTest::addColumn<TextWidth>("textWidth");
    QTest::addColumn<bool>("few"); // measurements
    const auto advance = [](QChar character) { return character == '.' ? 500.f : 1100.f; };
    QTest::newRow("digits alike") << TextWidth([=](const QString &text) {
        return std::accumulate(text.begin(), text.end(), 0.f,
                               [&](float sum, QChar each) { return sum + advance(each); });
    }) << true;
    QTest::newRow("a narrow 1") << TextWidth([](const QString &text) {
        return 1100.f * static_cast<float>(text.size()) -
               300.f * static_cast<float>(text.count('1'));
    }) << false;
    QTest::newRow("7. moves together") << TextWidth([](const QString &text) {
        return 1100.f * static_cast<float>(text.size()) - (text.contains("7.") ? 400.f : 0.f);
    }) << false;
}

void StatisticsGridTest::measuresTheShapesOfNumbers() {
    QFETCH(TextWidth, textWidth);
    QFETCH(bool, few);
    Grid grid(gridColumn::Count);
    initGrid(grid, false);
    grid.setRows(3000);
    float widest = 0;
    for (int row = 1; row < grid.Rows(); ++row) {
        grid.setTextMatrix(row, 1, QString::number(1117.117 + row * 1.01, 'f', row % 3));
        widest = std::fmax(widest, textWidth(grid.TextMatrix(row, 1)));
    }
    int measured = 0;
    sizeColumns(grid, 1, [&](const QString &text) {
        ++measured;
        return textWidth(text);
    });
    QCOMPARE(grid.ColWidth(1), static_cast<int>(std::nearbyint(widest + 120)));
    QCOMPARE(measured < 1000, few);
}

void StatisticsGridTest::summary_data() {
    QTest::addColumn<QStringList>("raw");
    QTest::addColumn<QStringList>("finished");

    const QString threes = "x|3|30|1.5%|0|.5|1|1%|.75|0|.5|0%|.25||";
    const QString threesDone = "x|3|30|1.5%|0|0.5|1|1%|.75|0|0.5|0%|.25||";
    QTest::newRow("percents are added up")
        << QStringList{threes, threes, threes}
        << QStringList{threesDone, threesDone, threesDone, spacer,
                       "Summary|9|90|4.5%|0|1.5|3|3%|2.25|0|1.5|0%|.75||"};

    QTest::newRow("rows count equally, whatever their records")
        << QStringList{"x|0|0|0%|1000000|0|0|0%||7|0|0.00%|0|2|1",
                       "y|0|0|0%|297000000|0|0|0%||2|0|0.00%|0|1|99"}
        << QStringList{"x|0|0|0%|1|0|0|0%|0|3.5|0|0%|0|2|1", "y|0|0|0%|3|0|0|0%|0|2|0|0%|0|1|99",
                       spacer, "Summary|0|0|0%|2|0|0|0%|0|2.8|0|0%|0||"};

    QTest::newRow("sums are those of unrounded rows")
        << QStringList{"x|0|0|.004%|0|.004|0|.004%|.004|.04|.004|0%|.004|1|",
                       "y|0|0|.004%|0|.004|0|.004%|.004|.04|.004|0%|.004|1|"}
        << QStringList{"x|0|0|0%|0|0|0|0%|0|0|0|0%|.004|1|", "y|0|0|0%|0|0|0|0%|0|0|0|0%|.004|1|",
                       spacer, "Summary|0|0|0.01%|0|0.01|0|0.01%|.01|0|0.01|0%|.008||"};

    QTest::newRow("a quarter of a percent, lost and won")
        << QStringList{"x|0|0|0%|0|400|0|0%||0|399|-.25%|0||",
                       "y|0|0|0%|0|400|0|0%||0|403|.75%|0||"}
        << QStringList{"x|0|0|0%|0|400|0|0%|0|0|399|-.25%|0||",
                       "y|0|0|0%|0|400|0|0%|0|0|403|0.75%|0||", spacer,
                       "Summary|0|0|0%|0|800|0|0%|0|0|802|0.25%|0||"};

    // Two signs meet, and such a text reads as 0.
    QTest::newRow("a cost below zero") << QStringList{"x|0|0|0%|0|-2|0|0%||0|-3|--50%|0||"}
                                       << QStringList{"x|0|0|0%|0|-2|0|0%|0|0|-3|0%|0||", spacer,
                                                      "Summary|0|0|0%|0|-2|0|0%|0|0|-3|0%|0||"};
    QTest::newRow("no rows") << QStringList()
                             << QStringList{spacer, "Summary|0|0|0%|0|0|0|0%|0|0|0|0%|0||"};
    QTest::newRow("huge and tiny sums")
        << QStringList{"x|1E+15|.1|0%|0|1E-05|1E-05|0%||0|0|-100%|0||",
                       "y|1E+15|.2|0%|0|0|1E-05|0%||0|0|0.00%|0||"}
        << QStringList{"x|1E+15|.1|0%|0|0|1E-05|0%|0|0|0|-100%|0||",
                       "y|1E+15|.2|0%|0|0|1E-05|0%|0|0|0|0%|0||", spacer,
                       "Summary|2E+15|.3|0%|0|0|2E-05|0%|0|0|0|-100%|0||"};
}

void StatisticsGridTest::summary() {
    QFETCH(QStringList, raw);
    Grid grid(gridColumn::Count);
    initGrid(grid, false);
    pour(grid, raw);
    sumUp(grid, false);
    QTEST(texts(grid), "finished");
}

void StatisticsGridTest::colors_data() {
    QTest::addColumn<QStringList>("raw");
    QTest::addColumn<QString>("colors"); // of the rows, the summary last
    QTest::newRow("one lost, one earned") << QStringList{lost, earned} << "rgg";
    QTest::newRow("more lost") << QStringList{lost, lost, earned} << "rrgr";
    QTest::newRow("even is green") << QStringList{even} << "gg";
    // 2.004 against 2 is even as shown.
    QTest::newRow("as rounded") << QStringList{"d|1|1|0%|0|2.004|0|0%||0|2|-.2%|0||"} << "gg";
}

void StatisticsGridTest::colors() {
    QFETCH(QStringList, raw);
    QFETCH(QString, colors);
    Grid grid(gridColumn::Count);
    initGrid(grid, true);
    pour(grid, raw);
    sumUp(grid, true);
    for (int row = 1; row < grid.Rows(); ++row) {
        const bool isSpacer = row == grid.Rows() - 2;
        const QChar expected =
            isSpacer ? 'g' : colors.at(row < grid.Rows() - 2 ? row - 1 : row - 2);
        for (int col = 0; col < grid.Cols(); ++col)
            QCOMPARE(grid.cellColor(row, col), expected == 'r' ? red : green);
    }
    QCOMPARE(grid.Row(), grid.Rows() - 1);
    QCOMPARE(grid.Col(), 14);

    Grid plain(gridColumn::Count);
    initGrid(plain, false);
    pour(plain, raw);
    sumUp(plain, false);
    for (int row = 1; row < plain.Rows(); ++row)
        QCOMPARE(plain.cellColor(row, 0), black);
}

void StatisticsGridTest::colorsSurviveUntilCleared() {
    Grid grid(gridColumn::Count);
    initGrid(grid, true);
    pour(grid, {lost, lost});
    sumUp(grid, true);
    pour(grid, {earned});
    sumUp(grid, false);
    QCOMPARE(grid.cellColor(grid.Rows() - 1, 0), red); // of the refresh before
    QCOMPARE(grid.cellColor(1, 0), green);             // the default colour of that time
    grid.Clear();
    initGrid(grid, false);
    QCOMPARE(grid.cellColor(grid.Rows() - 1, 0), black);
}

void StatisticsGridTest::viewSeesFinishedGridsOnly() {
    Grid grid(gridColumn::Count);
    initGrid(grid, false);
    pour(grid, {lost});
    QStringList seen;
    grid.onChange = [&] { seen += rowText(grid, grid.Rows() - 1); };
    sumUp(grid, true);
    QCOMPARE(seen, QStringList{"Summary|1|1|0%|0|2|0|0%|0|0|1|-50%|0||"});
    QVERIFY(grid.Redraw());
}

QTEST_APPLESS_MAIN(StatisticsGridTest)
#include "statisticsGridTest.moc"
