// frmMain: the refresh of the analysis view, the date range and the chart.
#include "core/analysis/dateRanges.h"
#include "core/analysis/grid/nodeStatistics.h"
#include "core/analysis/grid/statisticsGrid.h"
#include "core/analysis/grid/summary.h"
#include "core/analysis/tree/navigationTexts.h"
#include "core/analysis/tree/navigationTree.h"
#include "core/platform/services.h"
#include "core/shell/modMain.h"
#include "ui/shell/frmMain.h"
#include "ui/views/controls/elidedLabel.h"
#include "ui/views/controls/treeView.h"
#include "ui/views/hourglass.h"

#include <QDir>
#include <QFileInfo>

#include <utility>

namespace veltrona {

namespace {

const QString firstClick = QStringLiteral("first");

DateValue currentDate() {
    return dateValue(services().now());
}

} // namespace

void frmMain::loadTree() {
    m_viewBehind = true; // until the refresh that follows
    m_lossMarks.forget();
    buildNavigationTree(*modMain::Records, modMain::ProjectTitle, treeList);
    const QString path = QFileInfo(modMain::DbFileName).absoluteFilePath();
    m_treeView->setRootDescription(QDir::toNativeSeparators(path));
}

void frmMain::sumup() {
    sumUp(flxStat, modMain::GridColor);
}

void frmMain::selectRoot() {
    treeList.setSelectedItem(treeList.Nodes().Item(1));
}

/// The tree anew, and the whole account selected and shown.
void frmMain::rebuildViews() {
    loadTree();
    selectRoot();
    treeList_NodeClick(treeList.SelectedItem());
}

/// Both questions are asked before either answer is shown, so that a failure leaves caption, rows
/// and bars of one and the same node on the screen.
void frmMain::treeList_NodeClick(TreeNode *node) {
    if (m_refreshPauses > 0 || !node)
        return;
    const Hourglass hourglass;
    m_viewBehind = true;
    m_notes.reset();
    NodeStatistics statistics;
    ChartSeries series;
    {
        // Another program's import in between would part the grid from the chart.
        const sqlite::ReadTransaction reading(*modMain::DbConn);
        statistics = queryNodeStatistics(*modMain::Records, pathOf(*node), dateRange());
        series = queryChartSeries(*modMain::Records, chartRequest());
        m_lossMarks.update(*modMain::Records, dateRange(), modMain::GridColor, treeList);
    }
    m_shownRange = dateRange();
    lblSum->setFullText(statistics.caption);
    {
        const RedrawPause pause(flxStat);
        fillGrid(statistics, flxStat, modMain::GridColor);
        if (!statistics.rows.empty())
            sumup();
        sizeColumns(flxStat, -1, [this](const QString &text) { return textWidth(text); });
    }
    showChart(series);
    m_viewBehind = false;
}

ChartRequest frmMain::chartRequest() const {
    const TreeNode *node = treeList.SelectedItem();
    return {cboLeft.ListIndex(), cboGroup.ListIndex(), dateRange(),
            cboRange.ListIndex() == static_cast<int>(RangePreset::All),
            node ? pathOf(*node) : NodePath()};
}

void frmMain::fillChart() {
    if (m_refreshPauses > 0 || !treeList.SelectedItem())
        return;
    const Hourglass hourglass;
    const bool behind = std::exchange(m_viewBehind, true);
    ChartSeries series;
    {
        const sqlite::ReadTransaction reading(*modMain::DbConn);
        series = queryChartSeries(*modMain::Records, chartRequest());
    }
    showChart(series);
    m_viewBehind = behind;
}

void frmMain::showChart(const ChartSeries &series) {
    if (cboRange.ListIndex() == static_cast<int>(RangePreset::All))
        setRange(series.range);
    showSeries(series, mscMain);
}

void frmMain::cboLeft_Click() {
    if (cboLeft.Tag == firstClick)
        cboLeft.Tag.clear();
    else
        fillChart();
}

void frmMain::cboGroup_Click() {
    if (cboGroup.Tag == firstClick)
        cboGroup.Tag.clear();
    else
        fillChart();
}

void frmMain::setRange(const DateRange &range) {
    dtpStart.setValue(range.start);
    dtpEnd.setValue(range.end);
}

void frmMain::setPreset(RangePreset preset) {
    if (const auto range = presetRange(preset, currentDate))
        setRange(*range);
}

void frmMain::cboRange_Click() {
    setPreset(static_cast<RangePreset>(cboRange.ListIndex()));
    try {
        treeList_NodeClick(treeList.SelectedItem());
    } catch (const Failure &) {
        // A preset that can't be shown is chosen all the same; the next click in the tree tells
        // why.
    }
}

void frmMain::dtpStart_Change() {
    pickerChanged();
}

void frmMain::dtpEnd_Change() {
    pickerChanged();
}

void frmMain::pickerChanged() {
    {
        // The choice of "Custom" would refresh to the same end as the refresh below.
        const RefreshPause pause(*this);
        cboRange.setListIndex(static_cast<int>(RangePreset::Custom));
    }
    treeList_NodeClick(treeList.SelectedItem());
}

} // namespace veltrona
