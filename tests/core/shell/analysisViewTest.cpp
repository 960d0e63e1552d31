// The analysis view without a window: one refresh for each action, and what a failed one leaves.
#include "core/shell/analysisView.h"
#include "core/database/projectFile.h"
#include "core/platform/services.h"
#include "core/shell/modMain.h"
#include "support/faults.h"
#include "support/recordTable.h"

#include <QTest>

using namespace veltrona;
using State = AnalysisView::State;

class AnalysisViewTest : public QObject {
    Q_OBJECT

    test::RecordTable *m_table = nullptr;
    AnalysisControls *m_controls = nullptr;
    AnalysisView *m_view = nullptr;
    QString m_caption;
    QStringList m_said;
    int m_refreshes = 0;

    void hideTable(bool hide) {
        m_table->connection().execute(hide ? "ALTER TABLE tblGoogleDays RENAME TO hidden"
                                           : "ALTER TABLE hidden RENAME TO tblGoogleDays");
    }

private slots:
    void init() {
        services().now = [] { return QDateTime(QDate(2007, 5, 16), QTime(12, 0)); };
        m_table = new test::RecordTable;
        for (const char *name : {"One", "Two"})
            m_table->insert({{"Campaign", name}, {"GoogleDate", "2007-05-07"}, {"Clicks", 3}});
        m_table->insert({{"Campaign", "One"}, {"GoogleDate", "2007-05-01"}, {"Clicks", 2}});
        modMain::session() = ProjectSession::at(m_table->connection().path());
        modMain::session().open();
        m_controls = new AnalysisControls;
        m_said.clear();
        m_view = new AnalysisView(
            *m_controls,
            {.textWidth = [](const QString &text) { return 100.F * float(text.size()); },
             .setCaption = [this](const QString &caption) { m_caption = caption; },
             .setRootDescription = [](const QString &) {},
             .announce =
                 [this](const QString &sentence) {
                     if (!sentence.isEmpty())
                         m_said.append(sentence);
                 },
             .busy = [this]() -> std::shared_ptr<void> {
                 ++m_refreshes;
                 return nullptr;
             }});
        m_view->loadDefaults();
    }

    void cleanup() {
        delete m_view;
        delete m_controls;
        modMain::session().release();
        delete m_table;
        services().now = Services().now;
    }

    void oneRefreshForEachAction() {
        QCOMPARE(m_refreshes, 1); // presets and combos of the start included
        QCOMPARE(m_controls->flxStat.TextMatrix(1, 0), QString("One"));
        m_refreshes = 0;
        m_controls->dtpEnd.editDay(dayNumber(m_controls->dtpEnd.Value()) - 1);
        QCOMPARE(m_refreshes, 1); // for the picker and "Custom" together
        QCOMPARE(m_controls->cboRange.ListIndex(), int(RangePreset::Custom));
        m_view->openRow(2);
        QCOMPARE(m_refreshes, 2);
        QCOMPARE(m_controls->treeList.SelectedItem()->Text(), QString("Two"));
    }

    /// Another program commits before any statement of a click that lets it.
    void gridAndChartAreOfOneState() {
        static std::unique_ptr<sqlite::Connection> other;
        other = openProject(m_table->connection().path());
        const auto restore = qScopeGuard([wait = services().lockWait] {
            services().lockWait = wait;
            other.reset();
        });
        services().lockWait = 0;
        m_controls->cboLeft.setListIndex(3); // clicks
        const auto commit = [](unsigned, void *, void *, void *) {
            failureOf([] { other->execute("UPDATE tblGoogleDays SET Clicks = Clicks + 1"); });
            return 0;
        };
        sqlite3 *handle = modMain::DbConn->handle();
        sqlite3_trace_v2(handle, SQLITE_TRACE_STMT, commit, nullptr);
        m_controls->treeList.onNodeClick(m_controls->treeList.SelectedItem());
        sqlite3_trace_v2(handle, 0, nullptr, nullptr);
        const QString clicks = m_controls->flxStat.TextMatrix(1, gridColumn::Clicks);
        QVERIFY(clicks.toInt() > 3);
        QCOMPARE(2 * clicks.toDouble(), m_controls->mscMain.DataGrid().rows()[1].value);
    }

    void aBarsDaysAndBack() {
        const DateRange week = m_view->dateRange(); // 6 to 12 May, at noon
        const auto bar = [&](int number) { m_controls->mscMain.onBarChosen(number); };
        const QString subject = m_controls->flxStat.subject();
        m_refreshes = 0;
        bar(1);
        QCOMPARE(m_refreshes, 1);
        QVERIFY(m_controls->flxStat.subject() != subject);
        QCOMPARE(m_said.last().left(19), "1 bar, 7 May 2007: ");
        QVERIFY((m_view->dateRange() == DateRange{week.start + 1, week.start + 1}));
        QCOMPARE(m_controls->cboRange.ListIndex(), int(RangePreset::Custom));
        bar(0); // is shown already
        m_controls->cboRange.setListIndex(int(RangePreset::All));
        const DateRange all = m_view->dateRange();
        bar(6);
        QCOMPARE(m_controls->flxStat.TextMatrix(1, gridColumn::Clicks), QString("3"));
        QVERIFY(m_controls->mscMain.onDaysBack());
        QVERIFY(m_view->dateRange() == all);
        QCOMPARE(m_controls->cboRange.ListIndex(), int(RangePreset::Custom));
        QVERIFY(m_controls->mscMain.onDaysBack());
        QVERIFY(m_view->dateRange() == week);
        QVERIFY(!m_controls->mscMain.onDaysBack());
        bar(1);
        m_view->loadDefaults();
        QVERIFY(!m_controls->mscMain.onDaysBack());
    }

    void nodesExplainThemselves() {
        m_table->insert({{"Campaign", "Two"}, {"GoogleDate", "2007-05-08"}, {"cost", 2000000}});
        const Tree &tree = m_controls->treeList;
        const auto notes = [&](int campaign) {
            const TreeNode *root = tree.Nodes().Item(1);
            return tree.notesOf(campaign < 0 ? *root : *root->Children[campaign]);
        };
        const QStringList coverage{"4 records, 1 to 8 May 2007; no records on 2 to 6 May."};
        const QStringList loss{"Loss: cost 2.00, brought 0.00.",
                               "2.00 of it (100%) went to 1 keyword without a conversion."};
        modMain::GridColor = true;
        m_view->loadDefaults();
        const bool right = notes(-1) == coverage + loss && notes(0).isEmpty() && notes(1) == loss;
        modMain::GridColor = false;
        QVERIFY(right);
        m_view->loadDefaults();
        QCOMPARE(notes(-1) + notes(1), coverage);
    }

    void isSaidWithoutAMoveOfTheFocus() {
        QCOMPARE(m_said.join('|').left(49), "Campaign Summary. 7 bars, 6 May 2007 to 12 May 20");
        m_said.clear();
        m_controls->cboRange.setListIndex(int(RangePreset::LastMonth));
        QCOMPARE(m_said.size(), 1);
        QCOMPARE(m_said.first().left(51), "There are no records from 1 Apr 2007 to 30 Apr 2007");
        QCOMPARE(m_controls->flxStat.notice(), m_said.first());
        m_controls->cboRange.setListIndex(int(RangePreset::LastWeek));
        QCOMPARE(m_controls->flxStat.notice(), QString());
        QCOMPARE(m_said.size(), 1);
    }

    void afterAFailedRefresh() {
        QVERIFY(m_view->state() == State::Current);
        QVERIFY(!m_view->figureNotes(1, gridColumn::Clicks).isEmpty());
        hideTable(true);
        m_controls->cboRange.setListIndex(int(RangePreset::ThisWeek)); // fails without a word
        QVERIFY(m_view->state() == State::Outdated);
        QVERIFY(m_view->figureNotes(1, gridColumn::Clicks).isEmpty());
        m_view->openRow(1);
        QVERIFY(!m_controls->treeList.SelectedItem()->Parent);
        QVERIFY(failureOf([&] { m_view->makeCurrent(); }));
        hideTable(false);
        m_view->makeCurrent();
        QVERIFY(m_view->state() == State::Current);
        QCOMPARE(m_controls->flxStat.Rows(), 3); // no record this week
    }
};

QTEST_GUILESS_MAIN(AnalysisViewTest)
#include "analysisViewTest.moc"
