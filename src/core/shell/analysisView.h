// The tree, the period, the grid and the chart as plain controls, and the one refresh that fills
// them from the open project. The window shows the controls and forwards what the user does with
// them.
#pragma once

#include "core/analysis/chart/chartSeries.h"
#include "core/analysis/dateRanges.h"
#include "core/analysis/grid/figureNotes.h"
#include "core/analysis/grid/lossMarks.h"
#include "core/analysis/grid/nextLoss.h"
#include "core/analysis/grid/statisticsGrid.h"
#include "core/controls/chart.h"
#include "core/controls/comboBox.h"
#include "core/controls/datePicker.h"
#include "core/controls/grid.h"
#include "core/controls/tree.h"

#include <QScopeGuard>
#include <QString>
#include <QStringList>

#include <functional>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

namespace veltrona {

/// The controls by their names; they keep the selection, the period and the statistics.
struct AnalysisControls {
    AnalysisControls();

    Tree treeList;
    Grid flxStat;
    Chart mscMain;
    ComboBox cboRange;
    ComboBox cboLeft;
    ComboBox cboGroup;
    DatePicker dtpStart;
    DatePicker dtpEnd;
};

/// What the view needs of the window that shows it.
struct AnalysisScreen {
    TextWidth textWidth;
    /// The caption above the statistics.
    std::function<void(const QString &)> setCaption;
    std::function<void(const QString &)> setRootDescription;
    /// Has screen readers say a sentence; may be empty.
    std::function<void(const QString &)> announce = nullptr;
    /// The cursor is busy as long as the result lives.
    std::function<std::shared_ptr<void>()> busy;
};

/// Works on the project of modMain. Its functions throw Failure; the handlers of the controls run
/// in the error filter.
class AnalysisView {
public:
    enum class State {
        Outdated, // a refresh failed or is still to come: grid and chart may show something else
        Current,  // grid and chart show what tree, dates and combos say
        Paused,   // refreshes are skipped: a later step of the same command refreshes everything
    };

    /// Both must outlive the view.
    AnalysisView(AnalysisControls &controls, AnalysisScreen screen);
    Q_DISABLE_COPY_MOVE(AnalysisView)

    State state() const { return m_state; }
    /// Called after each refresh, whether it failed or not: it may have found that the records in
    /// memory are no longer those of the file.
    std::function<void()> onRefresh;
    DateRange dateRange() const;

    /// Puts everything into its starting state for the open project.
    void loadDefaults();
    /// Rebuilds the tree, selects the whole account and shows it.
    void rebuild();
    /// Repeats a refresh that failed.
    void makeCurrent();
    /// Empties the statistics, summary included.
    void clearStatistics();
    void sumup();

    /// Selects the node of a row of the grid, if there is one.
    void openRow(int row);
    /// Sets the dates to the days of a bar, as the user would by hand.
    void showDaysOf(int bar);
    /// Sets back the dates from before the last such step; false if there is none.
    bool showDaysBefore();
    /// The lines that explain a figure of the grid; in the first column the row's loss.
    QStringList figureNotes(int row, int col);
    /// The lines that explain a node: what the project holds, a loss that the tree marks.
    QStringList nodeNotes(const TreeNode &node);
    /// The node that loses money after the selected one; null if there is none.
    TreeNode *nextLoss();

    /// The one refresh.
    void treeList_NodeClick(TreeNode *node);
    void cboRange_Click();

private:
    auto pauseRefreshes() {
        return qScopeGuard(
            [this, before = std::exchange(m_state, State::Paused)] { m_state = before; });
    }

    /// The cursor is busy as long as the result lives.
    auto beginRefresh() {
        return qScopeGuard([this, busy = m_screen.busy()] {
            if (onRefresh)
                onRefresh();
        });
    }

    void loadTree();
    void refresh(TreeNode *node);
    void announce(const QString &sentence) const;
    void fillChart();
    void showChart(const ChartSeries &series);
    ChartRequest chartRequest() const;

    /// Ignores the first click.
    void chooseSeries(ComboBox &combo);
    void cboLeft_Click() { chooseSeries(m_controls.cboLeft); }
    void cboGroup_Click() { chooseSeries(m_controls.cboGroup); }
    void dtpStart_Change();
    void dtpEnd_Change() { dtpStart_Change(); }
    void setPreset(RangePreset preset);
    void setThisWeek() { setPreset(RangePreset::ThisWeek); }
    void setLastWeek() { setPreset(RangePreset::LastWeek); }
    void setThisMonth() { setPreset(RangePreset::ThisMonth); }
    void setLastMonth() { setPreset(RangePreset::LastMonth); }
    void setAllDates() { setPreset(RangePreset::All); }
    void setRange(const DateRange &range);
    void setRangeByHand(const DateRange &range);

    AnalysisControls &m_controls;
    AnalysisScreen m_screen;
    State m_state = State::Outdated;
    DateRange m_shownRange;              // of the grid's figures
    std::vector<DateRange> m_daysOfBars; // of the chart
    std::vector<DateRange> m_daysBefore; // the dates before each chosen bar
    // Queried when a tooltip is first wanted.
    std::optional<FigureNotes> m_notes;
    std::optional<std::pair<const TreeNode *, QStringList>> m_nodeNotes;
    LossMarks m_lossMarks;
    struct FoundLosses {
        DateRange range;
        ProjectRecords::Version version;
        LossOrder order;
    };
    std::optional<FoundLosses> m_losses; // of the present tree
};

} // namespace veltrona
