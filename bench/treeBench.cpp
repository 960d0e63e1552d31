// A wide tree: its building, compared with one SELECT DISTINCT of its columns, and each step in its
// view, which must not keep a user waiting. bench/ratios.py has the limits.
#include "benchProject.h"

#include "core/analysis/tree/navigationTree.h"
#include "core/database/projectFile.h"
#include "ui/views/controls/treeView.h"

#include <QCoreApplication>
#include <QFile>
#include <QKeyEvent>

#include <benchmark/benchmark.h>

#include <map>
#include <memory>

namespace veltrona::bench {

namespace {

// 20 campaigns of 100 ad groups of 50 keywords of one type, a record of each; ten times as many
// campaigns make a tree of two million nodes.
constexpr int wideCampaigns = 20;
constexpr int wideAdGroups = 20 * 100;
constexpr int wideKeywords = wideAdGroups * 50;
constexpr int wideNodes = 1 + wideCampaigns + 3 * wideAdGroups + 2 * wideKeywords;

// One campaign at a time: a statement's work is limited by the size of the file.
constexpr const char *fillCampaign =
    "WITH leaf(i) AS (SELECT ?1 * 5000 UNION ALL SELECT i + 1 FROM leaf WHERE i < ?1 * 5000 + "
    "4999) "
    "INSERT INTO tblGoogleDays (Campaign, Adgroup, KeyWord, kwType, AdwordsTyp, GoogleDate, "
    "Clicks, Impressions, cost) SELECT printf('Campaign %d', i / 5000), "
    "printf('Ad group %d of %d', i / 50 % 100, i / 5000), "
    "printf('keyword %d for %d', i % 50, i / 50), 'Broad', 'Search Only', '2025-01-02', "
    "i % 7, i % 77, i % 777 * 10000 FROM leaf";

const sqlite::Connection &wideProject(int times = 1) {
    static std::map<int, std::unique_ptr<sqlite::Connection>> connections;
    auto &connection = connections[times];
    if (!connection) {
        const QString path = QStringLiteral(BENCH_FOLDER "/wide%1.vlt").arg(times);
        makeProject(QCoreApplication::applicationDirPath() + QStringLiteral("/data.dat"), path);
        connection = openProject(path);
        sqlite::Statement fill = connection->prepare(fillCampaign);
        for (qint64 campaign = 0; campaign < times * wideCampaigns; ++campaign) {
            fill.bind(1, campaign);
            fill.step();
            fill.reset();
        }
    }
    return *connection;
}

void wideTree(benchmark::State &state, int times) {
    const sqlite::Connection &connection = wideProject(times);
    Tree tree;
    for ([[maybe_unused]] auto _ : state)
        buildNavigationTree(connection, QStringLiteral("wide"), tree);
    if (tree.Nodes().Count() != times * (wideNodes - 1) + 1)
        state.SkipWithError("the tree is incomplete");
}
void wideTreeBaseline(benchmark::State &state, int times) {
    const sqlite::Connection &connection = wideProject(times);
    int rows = 0;
    for ([[maybe_unused]] auto _ : state) {
        sqlite::Statement statement = connection.prepare(
            "SELECT DISTINCT Campaign, Adgroup, KeyWord, kwType FROM tblGoogleDays");
        for (rows = 0; statement.step(); ++rows) {
            for (int column = 0; column < 4; ++column)
                benchmark::DoNotOptimize(statement.utf8(column));
        }
    }
    if (rows != times * wideKeywords)
        state.SkipWithError("names are missing");
}
BENCHMARK_CAPTURE(wideTree, _, 1)->Name("wideTree/ours");
BENCHMARK_CAPTURE(wideTreeBaseline, _, 1)->Name("wideTree/baseline");
BENCHMARK_CAPTURE(wideTree, _, 10)->Name("millionsOfNodes/ours");
BENCHMARK_CAPTURE(wideTreeBaseline, _, 10)->Name("millionsOfNodes/baseline");

/// The tree in a window, the root open and selected.
class WideView {
public:
    WideView() {
        buildNavigationTree(wideProject(), QStringLiteral("wide"), m_tree);
        m_tree.setSelectedItem(m_tree.Nodes().Item(1));
        m_view.resize(300, 400);
        m_view.show();
        m_view.setFocus();
        QCoreApplication::processEvents();
    }
    void key(Qt::Key key) {
        QKeyEvent press(QEvent::KeyPress, key, {});
        QCoreApplication::sendEvent(&m_view, &press);
        QCoreApplication::processEvents();
    }
    TreeNode *selected() const { return m_tree.SelectedItem(); }

private:
    Tree m_tree;
    TreeView m_view{m_tree};
};

void openWide(benchmark::State &state) {
    for ([[maybe_unused]] auto _ : state) {
        state.PauseTiming();
        auto view = std::make_unique<WideView>();
        state.ResumeTiming();
        view->key(Qt::Key_Asterisk);
        state.PauseTiming();
        view.reset();
        state.ResumeTiming();
    }
}
BENCHMARK(openWide)->Name("widePause/openAll");

/// One key in the tree with everything open; back and forth, so that each press moves as far.
void moveInWide(benchmark::State &state, Qt::Key there, Qt::Key back) {
    WideView view;
    view.key(Qt::Key_Asterisk);
    const TreeNode *before = view.selected();
    view.key(there);
    if (view.selected() == before)
        state.SkipWithError("the key doesn't move");
    bool isThere = true;
    for ([[maybe_unused]] auto _ : state)
        view.key((isThere = !isThere) ? there : back);
}
BENCHMARK_CAPTURE(moveInWide, _, Qt::Key_Down, Qt::Key_Up)->Name("widePause/down");
BENCHMARK_CAPTURE(moveInWide, _, Qt::Key_PageDown, Qt::Key_PageUp)->Name("widePause/page");
BENCHMARK_CAPTURE(moveInWide, _, Qt::Key_End, Qt::Key_Home)->Name("widePause/end");

} // namespace

} // namespace veltrona::bench
