// The shape of the statistics grid and the finish that sumUp gives it, on cells written by hand.
#include "core/analysis/grid/statisticsGrid.h"

#include "support/dataTable.h"
#include "support/gridText.h"

#include <QTest>

#include <algorithm>

using namespace veltrona;

namespace {

/// Raw sums in the place of the rows that an earlier refresh left: 15 texts between bars each.
void fill(Grid &grid, const QStringList &rows) {
    removeDataRows(grid);
    for (const QString &row : rows) {
        grid.AddItem(QString(), grid.Rows() - 2);
        const QStringList texts = row.split('|');
        for (int col = 0; col < texts.size(); ++col)
            grid.setTextMatrix(grid.Rows() - 3, col, texts.at(col));
    }
}

QStringList texts(const Grid &grid) {
    return test::gridText(grid, 1);
}

const QString spacer(14, '|');
const QString earned = "a|1|1|0%|0|2|0|0%||0|3|50%|0||";
const QString lost = "b|1|1|0%|0|2|0|0%||0|1|-50%|0||";

} // namespace

class StatisticsGridTest : public QObject {
    Q_OBJECT
private slots:
    void columnWidths_data() {
        const test::DataTable<float, int> row;
        row("just narrow", 779.75f, 890);
        row("not narrow", 780.f, 900);
        row("tie up", 1001.5f, 1122);
        // The sum with 120 is a 32-bit float too: above 2^23 it has no halves.
        row("float", 8388607.5f, 8388728);
    }
    void columnWidths() {
        const auto [widest, width] = test::row<float, int>();
        Grid grid(gridColumn::Count);
        initGrid(grid, false);
        grid.setTextMatrix(1, 3, "widest");
        sizeColumns(grid, -1,
                    [most = widest](const QString &text) { return text == "widest" ? most : 1.f; });
        QCOMPARE(grid.ColWidth(3), width);
        QCOMPARE(grid.ColWidth(4), 890);
        QCOMPARE(grid.ColWidth(13) + grid.ColWidth(14), 0); // hidden
        sizeColumns(grid, 4, [](const QString &) { return 880.f; });
        QCOMPARE(grid.ColWidth(4), 1000);
        QCOMPARE(grid.ColWidth(3), width);
    }

    void columnsAreAsWideAsTheWidestText_data() {
        const test::DataTable<TextWidth> row;
        const auto plain = [](const QString &text) {
            float width = 0;
            for (const QChar character : text)
                width += character == u'i' ? 37.F : 110.F;
            return width;
        };
        row("digits alike", plain);
        row("a wide seven",
            [=](const QString &text) { return plain(text) + 9.F * float(text.count(u'7')); });
        row("kerning of digits and letters",
            [=](const QString &text) { return plain(text) - 21.F * float(text.count(u"4d")); });
        row("no sum of characters", [=](const QString &text) {
            return plain(text) + (text.contains(u"99") ? 3000.F : 0.F);
        });
    }
    void columnsAreAsWideAsTheWidestText() {
        const auto [textWidth] = test::row<TextWidth>();
        Grid grid(gridColumn::Count);
        initGrid(grid, false);
        float widest = 0;
        for (int i = 0; i < 2500; ++i) {
            const QString name = QStringLiteral("i").repeated(i * 31 % 19) +
                                 QStringLiteral("word %1d %2").arg(i * 7919 % 4999).arg(i);
            grid.AddItem(name, gridRow::spacer(grid.Rows()));
            widest = std::max(widest, textWidth(name));
        }
        sizeColumns(grid, gridColumn::Name, textWidth);
        QCOMPARE(grid.ColWidth(gridColumn::Name), static_cast<int>(widest) + 120);
    }

    void summary_data() {
        const test::DataTable<QStringList, QStringList> row;
        row("rows count equally, whatever their records",
            {"x|0|0|0%|1000000|0|0|0%||7|0|0.00%|0|2|1",
             "y|0|0|0%|297000000|0|0|0%||2|0|0.00%|0|1|99"},
            {"x|0|0|0%|1|0|0|0%|0|3.5|0|0%|0|2|1", "y|0|0|0%|3|0|0|0%|0|2|0|0%|0|1|99", spacer,
             "Summary|0|0|0%|2|0|0|0%|0|2.8|0|0%|0||"});
        row("sums are those of unrounded rows",
            {"x|0|0|.004%|0|.004|0|.004%|.004|.04|.004|0%|.004|1|",
             "y|0|0|.004%|0|.004|0|.004%|.004|.04|.004|0%|.004|1|"},
            {"x|0|0|0%|0|0|0|0%|0|0|0|0%|.004|1|", "y|0|0|0%|0|0|0|0%|0|0|0|0%|.004|1|", spacer,
             "Summary|0|0|0.01%|0|0.01|0|0.01%|.01|0|0.01|0%|.008||"});
        row("a quarter of a percent, lost and won",
            {"x|0|0|0%|0|400|0|0%||0|399|-.25%|0||", "y|0|0|0%|0|400|0|0%||0|403|.75%|0||"},
            {"x|0|0|0%|0|400|0|0%|0|0|399|-.25%|0||", "y|0|0|0%|0|400|0|0%|0|0|403|0.75%|0||",
             spacer, "Summary|0|0|0%|0|800|0|0%|0|0|802|0.25%|0||"});
        // Two signs meet, and such a text reads as 0.
        row("a cost below zero", {"x|0|0|0%|0|-2|0|0%||0|-3|--50%|0||"},
            {"x|0|0|0%|0|-2|0|0%|0|0|-3|0%|0||", spacer, "Summary|0|0|0%|0|-2|0|0%|0|0|-3|0%|0||"});
    }
    void summary() {
        const auto [raw, finished] = test::row<QStringList, QStringList>();
        Grid grid(gridColumn::Count);
        initGrid(grid, false);
        fill(grid, raw);
        sumUp(grid, false);
        QCOMPARE(texts(grid), finished);
    }

    void colors_data() {
        // Of the rows, the spacer, the summary.
        const test::DataTable<QStringList, QString> row;
        row("one lost, one earned", {lost, earned}, "rggg");
        row("more lost", {lost, lost, earned}, "rrggr");
        row("even is green", {"c|1|1|0%|0|2|0|0%||0|2|0%|0||"}, "ggg");
    }
    void colors() {
        const auto [raw, colors] = test::row<QStringList, QString>();
        Grid grid(gridColumn::Count);
        initGrid(grid, true);
        fill(grid, raw);
        sumUp(grid, true);
        for (int row = 1; row < grid.Rows(); ++row) {
            const bool isLoss = colors.at(row - 1) == 'r';
            QCOMPARE(grid.isLoss(row), isLoss);
            for (int col = 0; col < grid.Cols(); ++col)
                QCOMPARE(grid.cellColor(row, col), isLoss ? red : green);
        }
        QCOMPARE(grid.Row(), grid.Rows() - 1);
        QCOMPARE(grid.Col(), 14);
    }

    void colorsSurviveUntilCleared() {
        Grid grid(gridColumn::Count);
        initGrid(grid, true);
        fill(grid, {lost, lost});
        sumUp(grid, true);
        fill(grid, {earned});
        sumUp(grid, false);
        QCOMPARE(grid.cellColor(grid.Rows() - 1, 0), red); // of the refresh before
        QCOMPARE(grid.cellColor(1, 0), green);             // the default colour of that time
        QVERIFY(grid.isLoss(grid.Rows() - 1) && !grid.isLoss(1));
        grid.Clear();
        QVERIFY(!grid.isLoss(grid.Rows() - 1));
    }

    void theNextProjectsSummaryKeepsItsColor() {
        Grid grid(gridColumn::Count);
        initGrid(grid, true);
        fill(grid, {earned, lost, earned});
        sumUp(grid, true);
        QCOMPARE(grid.cellColor(2, 0), red);
        initGrid(grid, false);
        QCOMPARE(grid.cellColor(2, 0), green); // the summary's own, not the data row's
    }
};

QTEST_APPLESS_MAIN(StatisticsGridTest)
#include "statisticsGridTest.moc"
