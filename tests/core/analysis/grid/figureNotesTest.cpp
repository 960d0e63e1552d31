// What figures, nodes and projects say of themselves: notes, losses and the way through them,
// coverage.
#include "core/analysis/grid/figureNotes.h"
#include "core/analysis/grid/comparedPeriods.h"
#include "core/analysis/grid/nextLoss.h"
#include "core/analysis/tree/coverage.h"
#include "core/analysis/tree/navigationTree.h"
#include "core/base/dateTexts.h"

#include "support/dataTable.h"
#include "support/recordTable.h"

#include <QTest>

using namespace veltrona;
using test::day;

namespace {

/// A day of a keyword, money in currency units.
void add(test::RecordTable &table, const QStringList &path, const QString &date, int clicks,
         int cost, int conversions, int value, qint64 ad = 0) {
    table.insert({{"Campaign", path.value(0)},
                  {"Adgroup", path.value(1)},
                  {"AdwordsTyp", "Search Only"},
                  {"KeyWord", path.value(2)},
                  {"kwType", path.value(3, "Broad")},
                  {"GoogleDate", date},
                  {"Clicks", clicks},
                  {"Impressions", 10 * clicks},
                  {"cost", qint64(1000000) * cost},
                  {"conv", conversions},
                  {"ConvValue", value},
                  {"CreativeId", ad}});
}

DateRange range(const QString &start, const QString &end) {
    return {day(start), day(end)};
}

} // namespace

class FigureNotesTest : public QObject {
    Q_OBJECT
private slots:
    void comparedPeriods_data() {
        const test::DataTable<QString, QString, QString, QString> row;
        row("a week", "2007-05-06", "2007-05-12", "29 Apr to 5 May", "6 to 12 May 2006");
        row("a month", "2007-03-01", "2007-03-31", "1 to 28 Feb", "1 to 31 Mar 2006");
        row("a February", "2005-02-01", "2005-02-28", "1 to 31 Jan", "1 to 29 Feb 2004");
        row("a quarter", "2007-01-01", "2007-03-31", "1 Oct to 31 Dec 2006",
            "1 Jan to 31 Mar 2006");
        row("a year", "2008-01-01", "2008-12-31", "1 Jan to 31 Dec 2007", "1 Jan to 31 Dec 2007");
        row("a month but one day", "2007-05-01", "2007-05-30", "1 to 30 Apr", "1 to 30 May 2006");
        row("a leap day", "2008-02-29", "2008-02-29", "28 Feb", "28 Feb 2007");
        row("more than a year", "2007-01-01", "2008-01-01", "31 Dec 2005 to 31 Dec 2006", "");
        row("backwards", "2007-05-02", "2007-05-01", "", "");
    }
    void comparedPeriods() {
        const auto [start, end, before, yearBefore] =
            test::row<QString, QString, QString, QString>();
        const DateRange shown = range(start, end);
        const int year = calendarDay(dayNumber(shown.start)).year;
        const auto text = [year](const std::optional<DateRange> &found) {
            return found ? datesText(*found, year) : QString();
        };
        QCOMPARE(text(periodBefore(shown)), before);
        QCOMPARE(text(sameDaysOfYearBefore(shown)), yearBefore);
    }

    void notes() {
        test::RecordTable table;
        add(table, {"Shoes", "g", "red"}, "2007-04-30", 1, 40, 1, 0);
        add(table, {"Shoes", "g", "red"}, "2007-05-01", 1, 30, 1, 20);
        add(table, {"Shoes", "g", "red", "Exact"}, "2007-05-02", 3, 10, 0, 5);
        add(table, {"Shoes", "g", "blue"}, "2007-05-02 10:00:00", 0, 8, 0, 0);
        add(table, {"Shoes", "g", "green"}, "2007-05-02", 9, 0, 0, 0); // cost nothing
        add(table, {"Boots", "g", "red"}, "2007-05-31", 700, 12, 6, 100);
        ProjectRecords records(table.connection());
        const DateRange may = range("2007-05-01", "2007-05-31");
        const FigureNotes notes(records, {}, may);
        using namespace gridColumn;
        QCOMPARE(notes.ofRow("Shoes", Cost),
                 QStringList({"18.00 of it (38%) went to 2 keywords without a conversion.",
                              "80% of the cost of this table.", "1 to 30 Apr: 40.00, up 20%"}));
        QCOMPARE(notes.ofRow("Shoes", Roi),
                 QStringList({"A value of 25.00 for a cost of 48.00: \u221247.92%",
                              "1 to 30 Apr: \u2212100%, up 52.1%"}));
        QCOMPARE(notes.ofRow("Shoes", Ctr).first(), "13 clicks of 130 impressions: 10%");
        QCOMPARE(notes.ofRow("Shoes", CostPerConversion),
                 QStringList({"48.00 for 1 conversion: 48.00", "1 to 30 Apr: 40.00, up 20%"}));
        QCOMPARE(
            notes.ofRow("Shoes", Conversions),
            QStringList({"14% of the conversions of this table.", "1 to 30 Apr: 1, no change"}));
        QCOMPARE(notes.ofRow("Boots", Conversions),
                 QStringList("86% of the conversions of this table."));
        QCOMPARE(notes.ofRow("Boots", Cost), QStringList("20% of the cost of this table."));
        QCOMPARE(notes.ofRow("Shoes", Name),
                 QStringList({"Loss: cost 48.00, brought 25.00.",
                              "18.00 of it (38%) went to 2 keywords without a conversion."}));
        QCOMPARE(notes.ofSummary(Cost),
                 QStringList({"18.00 of it (30%) went to 2 keywords without a conversion.",
                              "1 to 30 Apr: 40.00, up 50%"}));
        QCOMPARE(FigureNotes::ofLoss(records, {{"Shoes", "g"}}, may).first(),
                 "Loss: cost 48.00, brought 25.00.");
        const NodePath type{{"Shoes", "g", "Search Only", "red", "Exact"}};
        QCOMPARE(FigureNotes::ofLoss(records, type, may),
                 QStringList({"Loss: cost 10.00, brought 5.00.",
                              "10.00 of it (100%) went to 1 keyword without a conversion."}));
        add(table, {"Shoes", "g", "red"}, "2006-05-31", 20, 60, 1, 0);
        QCOMPARE(FigureNotes(records, {}, may).ofRow("Shoes", Cost).last(),
                 "1 to 31 May 2006: 60.00, down 20%");
        const DateRange none = range("2007-05-02", "2007-05-02"); // without conversions
        QCOMPARE(FigureNotes(records, {}, none).ofRow("Shoes", Conversions),
                 QStringList("1 May: 1, down 100%"));
        const DateRange year = range("2007-01-01", "2007-12-31"); // the year before once
        QCOMPARE(FigureNotes(records, {}, year).ofSummary(Clicks),
                 QStringList("1 Jan to 31 Dec 2006: 20, up 3470%"));
    }

    void fromLossToLoss() {
        test::RecordTable table;
        add(table, {"Gain", "g", "a"}, "2007-05-01", 1, 10, 1, 500);
        add(table, {"Gain", "g", "b"}, "2007-05-01", 1, 10, 1, 9); // in a campaign that earns
        add(table, {"Small", "g", "c"}, "2007-05-01", 1, 10, 1, 5);
        add(table, {"Small", "g", "d"}, "2007-05-01", 1, 10, 1, 3);
        add(table, {"Large", "g", "e"}, "2007-05-01", 1, 99, 1, 5);
        add(table, {"Later", "g", "f"}, "2007-05-02", 1, 99, 1, 5);
        ProjectRecords records(table.connection());
        Tree tree;
        buildNavigationTree(records, "Project", tree);
        const TreeNode *root = tree.Nodes().Item(1);
        const LossOrder order(records, range("2007-05-01", "2007-05-01"), tree.Nodes());
        QStringList visited;
        const TreeNode *node = root;
        for (int i = 0; i < 5; ++i) {
            node = order.after(node);
            QCOMPARE(node->Text(), "Broad"); // the deepest
            visited.append(node->Parent->Text());
        }
        QCOMPARE(visited.join(' '), "e d c b e");
        const TreeNode *gain = root->Children.front();
        QCOMPARE(order.after(gain)->Parent->Text(), "b"); // from within
        QCOMPARE(order.after(root->Children.back())->Parent->Text(), "d");
        QVERIFY(!LossOrder(records, range("2007-06-01", "2007-06-30"), tree.Nodes()).after(root));
    }

    void coverage() {
        test::RecordTable table;
        ProjectRecords records(table.connection());
        QCOMPARE(coverageText(records), "No records.");
        const auto on = [&](const QString &date, qint64 ad, const QString &keyword = "k") {
            add(table, {"C", "g", keyword}, date, 1, 1, 1, 1, ad);
        };
        on("2007-04-30", 7);
        QCOMPARE(coverageText(records), "1 record, 30 Apr 2007.");
        on("2007-05-01 23:59:59", 7);
        on("2007-05-05", 7);
        on("2007-05-05", 8);
        on("2007-05-05", 0);
        on("2007-05-05", 0, "other");
        QCOMPARE(coverageText(records),
                 "6 records, 30 Apr to 5 May 2007; no records on 2 to 4 May; "
                 "1 record counts twice, once with and once without an ad's "
                 "number.");
        on("2007-05-05", 7, "other");
        for (const char *date : {"2007-05-07", "2007-05-09", "2007-05-11", "2008-01-01"})
            on(date, 7);
        QCOMPARE(
            coverageText(records),
            "11 records, 30 Apr 2007 to 1 Jan 2008; no records on 2 to 4 May 2007, 6 May 2007, "
            "8 May 2007 and 2 more; 2 records count twice, once with and once without an ad's "
            "number.");
    }
};

QTEST_GUILESS_MAIN(FigureNotesTest)
#include "figureNotesTest.moc"
