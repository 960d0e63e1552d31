#include "core/shell/analysisView.h"

#include "core/analysis/grid/nodeStatistics.h"
#include "core/analysis/tree/coverage.h"
#include "core/analysis/tree/navigationTexts.h"
#include "core/analysis/tree/navigationTree.h"
#include "core/platform/dialogs/errorFilter.h"
#include "core/platform/services.h"
#include "core/shell/modMain.h"

#include <QDir>
#include <QFileInfo>

namespace veltrona {

namespace {

const QString firstClick = QStringLiteral("first");

/// No notes while no project is open, and where reading fails; the next click reports why.
QStringList notesIfPossible(const std::function<QStringList()> &notes) {
    try {
        return modMain::DbConn ? notes() : QStringList();
    } catch (const Failure &) {
        return {};
    }
}

/// Differs between any two nodes, periods and projects.
QString subjectOf(const TreeNode &node, const DateRange &range) {
    return QStringLiteral("%1 %2 ").arg(dayNumber(range.start)).arg(dayNumber(range.end)) +
           node.Key() + u'\n' + node.Tag() + u'\n' + modMain::DbFileName;
}

DateValue currentDate() {
    return dateValue(services().now());
}

} // namespace

AnalysisControls::AnalysisControls()
    : flxStat(gridColumn::Count, gridColumn::Shown), cboRange(captionsOf(rangePresets)),
      cboLeft(chartMetrics()), cboGroup(captionsOf(chartUnits)) {
    cboLeft.Tag = firstClick;
    cboGroup.Tag = firstClick;
}

AnalysisView::AnalysisView(AnalysisControls &controls, AnalysisScreen screen)
    : m_controls(controls), m_screen(std::move(screen)) {
    controls.treeList.onNodeClick = [this](TreeNode *node) {
        filtered([&] { treeList_NodeClick(node); });
    };
    controls.flxStat.onRowChosen = [this](int row) { filtered([&] { openRow(row); }); };
    controls.mscMain.onBarChosen = [this](int bar) { filtered([&] { showDaysOf(bar); }); };
    controls.mscMain.onDaysBack = [this] {
        bool hasDays = true;
        filtered([&] { hasDays = showDaysBefore(); });
        return hasDays;
    };
    controls.flxStat.columnNoteOf = columnNote;
    controls.flxStat.invitesToRead = [](int col) {
        return gridColumn::addsUpRates(gridColumn::at(col));
    };
    controls.flxStat.notesOf = [this](int row, int col) {
        return notesIfPossible([&] { return figureNotes(row, col); });
    };
    controls.treeList.notesOf = [this](const TreeNode &node) {
        return notesIfPossible([&] { return nodeNotes(node); });
    };
    controls.treeList.nextLoss = [this] {
        TreeNode *node = nullptr;
        filtered([&] { node = nextLoss(); });
        return node;
    };
    const auto handle = [this](std::function<void()> &event, void (AnalysisView::*handler)()) {
        event = [this, handler] { filtered([&] { (this->*handler)(); }); };
    };
    handle(controls.cboRange.onClick, &AnalysisView::cboRange_Click);
    handle(controls.cboLeft.onClick, &AnalysisView::cboLeft_Click);
    handle(controls.cboGroup.onClick, &AnalysisView::cboGroup_Click);
    handle(controls.dtpStart.onChange, &AnalysisView::dtpStart_Change);
    handle(controls.dtpEnd.onChange, &AnalysisView::dtpEnd_Change);
}

DateRange AnalysisView::dateRange() const {
    return {m_controls.dtpStart.Value(), m_controls.dtpEnd.Value()};
}

void AnalysisView::loadDefaults() {
    m_daysBefore.clear();
    {
        const auto pause = pauseRefreshes();
        m_controls.cboRange.setListIndex(static_cast<int>(RangePreset::LastWeek));
        m_controls.cboLeft.setListIndex(0);
        m_controls.cboGroup.setListIndex(0);
    }
    m_controls.flxStat.setRedraw(false);
    initGrid(m_controls.flxStat, modMain::GridColor);
    m_controls.flxStat.setRedraw(true);
    rebuild();
}

void AnalysisView::rebuild() {
    loadTree();
    m_controls.treeList.setSelectedItem(m_controls.treeList.Nodes().Item(1));
    TreeNode *root = m_controls.treeList.SelectedItem();
    refresh(root);
    announce(captionOf(pathOf(*root)) + QLatin1String(". ") +
             m_controls.mscMain.texts().description);
}

void AnalysisView::announce(const QString &sentence) const {
    if (m_screen.announce && m_state == State::Current)
        m_screen.announce(sentence);
}

void AnalysisView::makeCurrent() {
    if (m_state == State::Outdated)
        treeList_NodeClick(m_controls.treeList.SelectedItem());
}

void AnalysisView::clearStatistics() {
    fillGrid({}, m_controls.flxStat, modMain::GridColor);
}

void AnalysisView::sumup() {
    sumUp(m_controls.flxStat, modMain::GridColor);
}

void AnalysisView::loadTree() {
    m_state = State::Outdated;
    m_lossMarks.forget();
    m_losses.reset();
    m_nodeNotes.reset();
    buildNavigationTree(*modMain::Records, modMain::ProjectTitle, m_controls.treeList);
    const QString path = QFileInfo(modMain::DbFileName).absoluteFilePath();
    m_screen.setRootDescription(QDir::toNativeSeparators(path));
}

void AnalysisView::treeList_NodeClick(TreeNode *node) {
    refresh(node);
    announce(m_controls.mscMain.texts().notice);
}

/// Both queries run before either answer is shown, so that a failure leaves caption, rows and bars
/// of one and the same node on the screen.
void AnalysisView::refresh(TreeNode *node) {
    if (m_state == State::Paused || !node)
        return;
    const auto refresh = beginRefresh();
    m_state = State::Outdated;
    m_notes.reset();
    m_nodeNotes.reset();
    NodeStatistics statistics;
    ChartSeries series;
    {
        // Without it, another program's import in between would show in the chart alone.
        const sqlite::ReadTransaction reading(*modMain::DbConn);
        statistics = queryNodeStatistics(*modMain::Records, pathOf(*node), dateRange());
        series = queryChartSeries(*modMain::Records, chartRequest());
        m_lossMarks.update(*modMain::Records, dateRange(), modMain::GridColor, m_controls.treeList);
    }
    m_shownRange = dateRange();
    m_screen.setCaption(statistics.caption);
    {
        const RedrawPause pause(m_controls.flxStat);
        fillGrid(statistics, m_controls.flxStat, modMain::GridColor);
        if (!statistics.rows.empty())
            sumup();
        m_controls.flxStat.setSubject(subjectOf(*node, m_shownRange));
        m_controls.flxStat.setNotice(statistics.rows.empty() ? series.texts.notice : QString());
        sizeColumns(m_controls.flxStat, -1, m_screen.textWidth);
    }
    showChart(series);
    m_state = State::Current;
}

ChartRequest AnalysisView::chartRequest() const {
    const TreeNode *node = m_controls.treeList.SelectedItem();
    return {m_controls.cboLeft.ListIndex(), m_controls.cboGroup.ListIndex(), dateRange(),
            m_controls.cboRange.ListIndex() == static_cast<int>(RangePreset::All),
            node ? pathOf(*node) : NodePath()};
}

void AnalysisView::fillChart() {
    if (m_state == State::Paused || !m_controls.treeList.SelectedItem())
        return;
    const auto refresh = beginRefresh();
    const State before = std::exchange(m_state, State::Outdated);
    ChartSeries series;
    {
        const sqlite::ReadTransaction reading(*modMain::DbConn);
        series = queryChartSeries(*modMain::Records, chartRequest());
    }
    showChart(series);
    m_state = before;
}

void AnalysisView::showChart(const ChartSeries &series) {
    if (m_controls.cboRange.ListIndex() == static_cast<int>(RangePreset::All))
        setRange(series.range);
    m_daysOfBars.clear();
    for (const ChartBar &bar : series.bars)
        m_daysOfBars.push_back(
            {static_cast<DateValue>(bar.fromDay), static_cast<DateValue>(bar.toDay)});
    showSeries(series, m_controls.mscMain);
}

void AnalysisView::showDaysOf(int bar) {
    if (m_state == State::Paused || bar < 0 || bar >= static_cast<int>(m_daysOfBars.size()))
        return;
    const DateRange before = dateRange();
    const DateRange days = m_daysOfBars[static_cast<std::size_t>(bar)];
    if (dayNumber(before.start) == dayNumber(days.start) &&
        dayNumber(before.end) == dayNumber(days.end))
        return;
    m_daysBefore.push_back(before);
    setRangeByHand({days.start + timeOfDay(before.start), days.end + timeOfDay(before.end)});
}

bool AnalysisView::showDaysBefore() {
    if (m_daysBefore.empty())
        return false;
    const DateRange days = m_daysBefore.back();
    m_daysBefore.pop_back();
    setRangeByHand(days);
    return true;
}

void AnalysisView::setRangeByHand(const DateRange &range) {
    setRange(range);
    dtpStart_Change();
    if (m_controls.mscMain.texts().notice.isEmpty()) // else it has been said
        announce(m_controls.mscMain.texts().description);
}

void AnalysisView::openRow(int row) {
    const Grid &grid = m_controls.flxStat;
    Tree &tree = m_controls.treeList;
    // After a refresh that failed the rows may be those of another node.
    const bool isData = row >= gridRow::FirstData && row < gridRow::spacer(grid.Rows());
    if (!isData || m_state != State::Current || !tree.SelectedItem())
        return;
    TreeNode *node = nodeOfRow(*tree.SelectedItem(), grid.TextMatrix(row, gridColumn::Name));
    if (!node)
        return;
    tree.setSelectedItem(node);
    treeList_NodeClick(node);
}

QStringList AnalysisView::figureNotes(int row, int col) {
    const Grid &grid = m_controls.flxStat;
    const TreeNode *node = m_controls.treeList.SelectedItem();
    if (m_state != State::Current || !node)
        return {};
    if (!m_notes) {
        const sqlite::ReadTransaction reading(*modMain::DbConn);
        m_notes.emplace(*modMain::Records, pathOf(*node), m_shownRange);
    }
    return row == gridRow::summary(grid.Rows())
               ? m_notes->ofSummary(col)
               : m_notes->ofRow(grid.TextMatrix(row, gridColumn::Name), col);
}

QStringList AnalysisView::nodeNotes(const TreeNode &node) {
    if (m_nodeNotes && m_nodeNotes->first == &node)
        return m_nodeNotes->second;
    const sqlite::ReadTransaction reading(*modMain::DbConn);
    QStringList notes;
    if (!node.Parent)
        notes.append(coverageText(*modMain::Records));
    if (node.IsLoss && m_state == State::Current)
        notes += FigureNotes::ofLoss(*modMain::Records, pathOf(node), m_shownRange);
    m_nodeNotes.emplace(&node, notes);
    return notes;
}

TreeNode *AnalysisView::nextLoss() {
    const auto busy = m_screen.busy();
    const DateRange range = dateRange();
    const ProjectRecords::Version version = modMain::Records->version();
    if (!m_losses || m_losses->range != range || m_losses->version != version)
        m_losses = FoundLosses{range, version,
                               LossOrder(*modMain::Records, range, m_controls.treeList.Nodes())};
    return m_losses->order.after(m_controls.treeList.SelectedItem());
}

void AnalysisView::chooseSeries(ComboBox &combo) {
    if (combo.Tag == firstClick)
        combo.Tag.clear();
    else
        fillChart();
}

void AnalysisView::setRange(const DateRange &range) {
    m_controls.dtpStart.setValue(range.start);
    m_controls.dtpEnd.setValue(range.end);
}

void AnalysisView::setPreset(RangePreset preset) {
    if (const auto range = presetRange(preset, currentDate))
        setRange(*range);
}

void AnalysisView::cboRange_Click() {
    setPreset(static_cast<RangePreset>(m_controls.cboRange.ListIndex()));
    try {
        treeList_NodeClick(m_controls.treeList.SelectedItem());
    } catch (const Failure &) {
        // The preset stays chosen; the next click in the tree reports why it can't be shown.
    }
}

void AnalysisView::dtpStart_Change() {
    {
        const auto pause = pauseRefreshes();
        m_controls.cboRange.setListIndex(static_cast<int>(RangePreset::Custom));
    }
    treeList_NodeClick(m_controls.treeList.SelectedItem());
}

} // namespace veltrona
