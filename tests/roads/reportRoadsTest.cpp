// The road of a report file to tree, grid and chart, through the real window. The small figures are
// worked out by hand; the large ones by tests/reference/statistics.py.
#include "core/analysis/grid/statisticsGrid.h"
#include "core/analysis/tree/navigationTree.h"
#include "core/base/dateValue.h"
#include "core/shell/modMain.h"
#include "core/shell/settings.h"
#include "support/mainWindow.h"

#include <QComboBox>
#include <QDateEdit>
#include <QJsonArray>
#include <QJsonDocument>
#include <QProcess>
#include <QTest>

using namespace veltrona;

namespace {

constexpr int all = 4;
constexpr int custom = 5;

// The clock stands at Wednesday, 2007-05-16: last week is May 6 to 12.
const QStringList mixedRows = {
    "O'Neil's|it's|o'clock|Broad|Search Only|2007-05-07 08:30|10|100|10|200000|2000000|2|5|1.5|1",
    "O'Neil's|it's|o'clock|Broad|Search "
    "Only|2007-05-12T23:59:59|5|50|10.5|400000|2000000|0|0|2.5|0",
    "O'Neil's|it's|o'clock|Exact|Content Only|2007-05-08|1|10|10|0|0|1|1|0|0",
    "O'Neil's|zwei|x|Exact|Search Only|2007-04-30|1|1|0|0|1000000|0|4|1|0",
    "<img src=x> sale|Gr\u00FC\u00DFe|kauf \"jetzt\" & spare|Exact|Search Only|2007-05-09|3|30|.25|"
    "1500000|4500000|1|2.25|3|2",
    "\u00C4pfel \U0001F34F||||Search Only|2007-05-06|0|7|0|0|0|0|0.5|0|0",
};
const QStringList lastWeekRows = {
    "Campaigns|Clicks|Impr.|CTR|Avg.CPC|Cost|Conv.|Conv.Rate|Cost/Conv.|Avg.Pos|Conv. Val.|ROI|"
    "Transactions",
    "<img src=x> sale|3|30|0.25%|1.5|4.5|1|1%|4500000|3|2.25|-50%|2",
    "\u00C4pfel \U0001F34F|0|7|0%|0|0|0|0%|0|0|0.5|0%|0",
    "O'Neil's|16|160|30.5%|0.3|4|3|3%|1000000|2|6|50%|1",
    "||||||||||||",
    "Summary|19|197|30.75%|0.6|8.5|4|4%|5500000|1.7|8.75|2.94%|3",
};

QString isoPeriod(const frmMain &window) {
    return isoText(window.dtpStart.Value()) + u' ' + isoText(window.dtpEnd.Value());
}

} // namespace

class ReportRoadsTest : public test::WindowTest {
    Q_OBJECT
protected:
    void prepare() override { m_home->importRows(mixedRows); }

private slots:
    void mixedReport() {
        const QString tree =
            "Veltrona;  <img src=x> sale;    Gr\u00FC\u00DFe;      Search keywords;        kauf "
            "\"jetzt\" & spare;          Exact;      Content;  \u00C4pfel \U0001F34F;    ;      "
            "Search keywords;        ;          ;      Content;  O'Neil's;    it's;      Search "
            "keywords;        o'clock;          Broad;          Exact;      Content;    zwei;      "
            "Search keywords;        x;          Exact;      Content";
        QCOMPARE(m_home->treeDump().join(u';'), tree);
        QCOMPARE(m_home->caption(), "Campaign Summary");
        QCOMPARE(m_home->gridDump(), lastWeekRows);
        saveSetting(settingsKey, "grdcolor", "1", textValue);
        QVERIFY(m_home->restart());
        QCOMPARE(m_home->gridDump(), lastWeekRows);
        const Grid &grid = m_home->window().flxStat;
        QCOMPARE(grid.cellColor(1, 0), veltrona::red); // the cost of 4.5 against 2.25
        QCOMPARE(grid.cellColor(2, 0), veltrona::green);
        QCOMPARE(grid.cellColor(3, 0), veltrona::green);
        QCOMPARE(grid.cellColor(5, 12), veltrona::green);
        // A time of day is after its day's midnight: half past eight on the 7th is in the bar of
        // the 8th, the last second of the 12th after the last bar.
        QCOMPARE(m_home->chartDump(),
                 QStringList({"May 06=0", "May 07=0", "May 08=0.2", "May 09=1.5", "May 10=0",
                              "May 11=0", "May 12=0"}));

        // The tree's marks follow another program's records and the switch.
        const TreeNode *lost = m_home->node({"<img src=x> sale"});
        QVERIFY(lost->IsLoss);
        sqlite::Connection other;
        other.open(modMain::DbFileName);
        for (const int value : {9, 1}) {
            other.execute("UPDATE tblGoogleDays SET ConvValue = " + std::to_string(value));
            m_home->selectNode({});
            QCOMPARE(lost->IsLoss, value == 1); // at a cost of 4.5
        }
        modMain::GridColor = false;
        m_home->selectNode({});
        QVERIFY(!lost->IsLoss);
    }

    void branches() {

        m_home->selectNode({"O'Neil's", "it's"});
        QCOMPARE(m_home->caption(), "Campain: 'O'Neil's' > Adgroup: 'it's'");
        QCOMPARE(
            m_home->gridDump().mid(1),
            QStringList({"Content Only|1|10|10%|0|0|1|1%|0|0|1|0%|0",
                         "Search Only|15|150|20.5%|0.3|4|2|2%|1000000|2|5|25%|1", "||||||||||||",
                         "Summary|16|160|30.5%|0.15|4|3|3%|1000000|1|6|50%|1"}));
        QVERIFY(m_home->gridDump().first().startsWith("Search and Content|"));

        // A type node counts its keyword's search rows, whatever their type.
        const QStringList keyword = {"O'Neil's", "it's", "Search keywords", "o'clock"};
        m_home->selectNode(keyword);
        const QStringList keywordRows = m_home->gridDump();
        QCOMPARE(keywordRows.value(1), "Broad|15|150|20.5%|0.3|4|2|2%|1000000|2|5|25%|1");
        m_home->selectNode(keyword + QStringList{"Exact"});
        QCOMPARE(m_home->gridDump(), keywordRows);
        QVERIFY(m_home->caption().endsWith(" > Keyword: 'o'clock' > KeywordType: 'Exact'"));

        m_home->selectNode({"O'Neil's", "it's", "Content"});
        QCOMPARE(m_home->gridDump().value(1), "o'clock|1|10|10%|0|0|1|1%|0|0|1|0%|0");
        m_home->selectNode({"\u00C4pfel \U0001F34F", "", "Search keywords", ""});
        QCOMPARE(m_home->gridDump().value(1), "|0|7|0%|0|0|0|0%|0|0|0.5|0%|0");
        m_home->selectNode({"<img src=x> sale", "Gr\u00FC\u00DFe", "Search keywords"});
        QCOMPARE(m_home->gridDump().value(1),
                 "kauf \"jetzt\" & spare|3|30|0.25%|1.5|4.5|1|1%|4500000|3|2.25|-50%|2");

        // Out of its period a node shows the empty form, with the heading of the root.
        m_home->selectNode({"O'Neil's", "zwei"});
        QCOMPARE(m_home->gridDump().size(), 3);
        QVERIFY(m_home->gridDump().first().startsWith("Campaigns|"));
        QVERIFY(m_home->caption().endsWith("Adgroup: 'zwei'"));
    }

    void allDates() {
        frmMain &window = m_home->window();
        auto *range = m_home->view<QComboBox>("cboRange");
        range->setFocus();
        QTest::keyClick(range, Qt::Key_A);
        QCOMPARE(window.cboRange.ListIndex(), all);
        QCOMPARE(isoPeriod(window), "2007-04-30 2007-05-12 23:59:59");
        QCOMPARE(m_home->view<QDateEdit>("dtpStart")->date(), QDate(2007, 4, 30));
        QCOMPARE(m_home->gridDump().value(3),
                 "O'Neil's|17|161|30.5%|0.3|5|3|3%|1000000|1.7|10|100%|1");
        QCOMPARE(m_home->chartDump().size(), 13);

        // Other days come in: the query of this refresh still asks for the pickers' dates, and the
        // chart of the same refresh finds the new ones.
        const QStringList before = m_home->gridDump();
        m_home->importRows({"New|n|k|Exact|Search Only|1985-03-01|1|1|1",
                            "New|n|k|Exact|Search Only|2007-06-01|2|2|2"});
        QVERIFY(m_home->node({"New", "n"}));
        QCOMPARE(m_home->gridDump(), before);
        QCOMPARE(isoPeriod(window), "1985-03-01 2007-06-01");
        m_home->selectNode({});
        QVERIFY(m_home->gridDump().contains("New|3|3|3%|0|0|0|0%|0|0|0|0%|0"));
        // Whatever node is selected, the range is the whole table's.
        m_home->selectNode({"O'Neil's", "zwei"});
        QCOMPARE(isoPeriod(window), "1985-03-01 2007-06-01");
        m_home->selectNode({});
        // Chosen again, "All" begins at its fixed date once more.
        window.cboRange.setListIndex(all);
        QVERIFY(m_home->gridDump().contains("New|2|2|2%|0|0|0|0%|0|0|0|0%|0"));
        QCOMPARE(isoPeriod(window), "1985-03-01 2007-06-01");
    }

    void whatAnImportLeavesAndTakes() {
        frmMain &window = m_home->window();
        const int narrow = window.flxStat.ColWidth(0);
        window.cboLeft.setListIndex(3);
        window.cboGroup.setListIndex(1);
        m_home->selectNode({"O'Neil's", "it's"});
        const TreeNode *selected = window.treeList.SelectedItem();
        m_home->importReport(QString()); // cancelled
        QCOMPARE(window.treeList.SelectedItem(), selected);
        // The grid is emptied before the report is looked at, and filled again when it is refused.
        int rows = 0;
        m_home->dialogs.whileOpen = [&] { rows = window.flxStat.Rows(); };
        m_home->dialogs.expectAnswer(Answer::Ok);
        m_home->importReport(m_home->writeFile("none.xml", "<r><column name='date'/></r>"));
        QCOMPARE(rows, 3);
        QCOMPARE(window.treeList.SelectedItem(), window.treeList.Nodes().Item(1));
        QCOMPARE(m_home->gridDump(), lastWeekRows);
        m_home->importRows({QString(60, 'W') + "|||||2007-05-07|1"});
        QCOMPARE(window.cboLeft.ListIndex() * 10 + window.cboGroup.ListIndex(), 31);
        QVERIFY(window.flxStat.ColWidth(0) > 2 * narrow);                  // for the new name
        QVERIFY(window.flxStat.ColWidth(12) > window.flxStat.ColWidth(1)); // for its heading
    }

    void presetsAndPickers() {
        frmMain &window = m_home->window();
        int refreshes = 0; // every refresh ends in the chart
        window.mscMain.onChange = [&refreshes] { ++refreshes; };
        for (int preset = 0; preset <= custom; ++preset) {
            window.cboRange.setListIndex(preset);
            QCOMPARE(std::exchange(refreshes, 0), 1);
        }
        QCOMPARE(isoPeriod(window), "2007-04-30 2007-05-12 23:59:59"); // as "All" left it
        window.cboRange.setListIndex(3);
        QCOMPARE(isoPeriod(window), "2007-04-01 12:00:00 2007-04-30 12:00:00");
        QCOMPARE(m_home->gridDump().value(1), "O'Neil's|1|1|0%|0|1|0|0%|0|1|4|300%|0");

        // One edit, one refresh, when it is finished; the time of day stays.
        window.cboRange.setListIndex(1);
        refreshes = 0;
        auto *start = m_home->view<QDateEdit>("dtpStart");
        start->setFocus();
        start->setSelectedSection(QDateTimeEdit::DaySection);
        QTest::keyClicks(start, "09");
        QCOMPARE(std::exchange(refreshes, 0), 0);
        QCOMPARE(window.cboRange.ListIndex(), 1);
        QTest::keyClick(start, Qt::Key_Return);
        QCOMPARE(std::exchange(refreshes, 0), 1);
        QCOMPARE(window.cboRange.ListIndex(), custom);
        QCOMPARE(m_home->view<QComboBox>("cboRange")->currentText(), "Custom");
        QCOMPARE(isoPeriod(window), "2007-05-09 12:00:00 2007-05-12 12:00:00");
        QVERIFY(m_home->gridDump().value(2).startsWith("O'Neil's|5|50|"));
        window.mscMain.onChange = nullptr;
        window.cboRange.setListIndex(1);
        window.cboLeft.setListIndex(3);
        QCOMPARE(m_home->chartDump().mid(2, 2), QStringList({"May 08=11", "May 09=3"}));
        window.cboGroup.setListIndex(2);
        QCOMPARE(m_home->chartDump(), QStringList{"2007 May=0"});
    }

    void largeReport() {
        m_home.reset(); // one window at a time, as in the program
        m_home = std::make_unique<test::MainWindow>(QDate(2025, 2, 20));
        test::MainWindow &road = *m_home;
        saveSetting(settingsKey, "grdcolor", "1", textValue);
        QVERIFY(road.start());
        const QString report = road.file("large.xml");
        QProcess python;
        python.start(VELTRONA_PYTHON, {VELTRONA_MAKE_REPORT, "--days", "60", "--campaigns", "5",
                                       "--density", "0.8", "--output", report});
        QVERIFY(python.waitForFinished(120'000));
        road.importReport(report);
        modMain::DbConn->execute("UPDATE tblGoogleDays SET GoogleDate = GoogleDate || ' 18:30:00' "
                                 "WHERE GoogleDayId % 3 = 0");
        road.window().cboRange.setListIndex(2); // 2025-02-01 to 2025-02-20
        const TreeNode *campaign = road.window().treeList.Nodes().Item(1)->Children[1];
        const TreeNode *group = campaign->Children[0];
        const QStringList path = {campaign->Text(), group->Text(), "Search keywords",
                                  group->Children[0]->Children[0]->Text()};
        const QStringList conditions = {"campaign=" + path[0], "adGroup=" + path[1],
                                        "adWordsTyp=Search Only", "Keyword=" + path[3]};
        const char *const groupings[] = {"campaign", "adGroup", "adWordsTyp", "Keyword", "kwType"};
        for (int depth = 0; depth <= path.size(); ++depth) {
            road.selectNode(path.first(depth));
            python.start(VELTRONA_PYTHON,
                         QStringList{VELTRONA_REFERENCE, modMain::DbFileName, "2025-02-01",
                                     "2025-02-20", groupings[depth]} +
                             conditions.first(depth));
            QVERIFY(python.waitForFinished(120'000));
            QStringList expected;
            const QJsonDocument answer = QJsonDocument::fromJson(python.readAllStandardOutput());
            for (const QVariant &row : answer["rows"].toArray().toVariantList())
                expected << row.toStringList().first(13).join(u'|');
            QVERIFY2(expected.size() >= 2, python.readAllStandardError());
            QStringList shown = road.gridDump().mid(1);
            shown.remove(shown.size() - 2); // the spacer
            QCOMPARE(shown, expected);
            const QJsonArray notes = answer["notes"].toArray();
            const Grid &grid = road.window().flxStat;
            for (int row = 0; row < notes.size(); ++row) {
                const int gridRow = row + 1 < notes.size() ? row + 1 : grid.Rows() - 1;
                const QString name = grid.TextMatrix(gridRow, 0);
                const TreeNode *node = nodeOfRow(*road.window().treeList.SelectedItem(), name);
                QCOMPARE(node && node->IsLoss, node && answer["red"].toArray().contains(row));
                for (int col = 0; col < 13; ++col)
                    QCOMPARE(grid.notesOf(gridRow, col),
                             notes[row][col].toVariant().toStringList());
            }
        }
    }
};

QTEST_MAIN(ReportRoadsTest)
#include "reportRoadsTest.moc"
