// The main window: menu bar, tool bar, status bar and three frames with tree, grid and chart. Its
// handlers gather their inputs, call one function of a folder and show the result. It owns the
// controls' data; the views on the surface only show it.
#pragma once

#include "core/analysis/chart/chartSeries.h"
#include "core/analysis/dateRanges.h"
#include "core/analysis/grid/figureNotes.h"
#include "core/analysis/grid/lossMarks.h"
#include "core/controls/chart.h"
#include "core/controls/comboBox.h"
#include "core/controls/commonDialog.h"
#include "core/controls/datePicker.h"
#include "core/controls/grid.h"
#include "core/controls/tree.h"
#include "core/picture/drawing.h"
#include "core/report/report.h"
#include "ui/views/twipScale.h"

#include <QMainWindow>

#include <functional>
#include <optional>

class QFrame;
class QLabel;
class QToolBar;

namespace veltrona {

class ChartView;
class ComboBoxView;
class DatePickerView;
class ElidedLabel;
class GridView;
class TreeView;
struct WindowLayout;

class frmMain : public QMainWindow {
    Q_OBJECT

public:
    frmMain();
    ~frmMain() override;

    /// Opens `modMain::DbFileName` in the place of the project that was open, and puts the view
    /// into its starting state. `first` is true only at the start of the program. If the open
    /// fails, the project that was open and its view stay as they were, and the Failure comes out.
    void initApp(bool first);
    /// Puts the whole view into its starting state for the open project.
    void loadDefaults();
    QString getFileName(const QString &fname) const;
    void impRep();
    void expRep();
    void prnRep();
    void sumup();

    /// Finds the folders, the project and the colour flags, and opens the project; false if the
    /// user quits at a project that can't be opened.
    bool Form_Load();

    Tree treeList;
    Grid flxStat;
    Chart mscMain;
    ComboBox cboRange;
    ComboBox cboLeft;
    ComboBox cboGroup;
    DatePicker dtpStart;
    DatePicker dtpEnd;
    CommonDialog cdMain;

protected:
    void resizeEvent(QResizeEvent *event) override;
    void moveEvent(QMoveEvent *event) override;
    void showEvent(QShowEvent *event) override;
    void changeEvent(QEvent *event) override;
    bool event(QEvent *event) override;
    void closeEvent(QCloseEvent *event) override;
    void dragEnterEvent(QDragEnterEvent *event) override;
    void dragMoveEvent(QDragMoveEvent *event) override;
    void dropEvent(QDropEvent *event) override;

private:
    /// While one lives, refreshes that a later step repeats are left out.
    class RefreshPause {
    public:
        explicit RefreshPause(frmMain &window) : m_window(window) { ++m_window.m_refreshPauses; }
        ~RefreshPause() { --m_window.m_refreshPauses; }
        RefreshPause(const RefreshPause &) = delete;
        RefreshPause &operator=(const RefreshPause &) = delete;

    private:
        frmMain &m_window;
    };

    struct MenuEntry {
        const char *name;
        const char *caption;
        void (frmMain::*handler)();
    };

    // Construction.
    void buildCommands();
    void addMenu(const char *name, const QString &title, std::initializer_list<MenuEntry> entries);
    /// Every command of menu and tool bar starts here.
    void runCommand(const std::function<void()> &command);
    void buildToolBar();
    void buildStatusBar();
    void buildFrames();
    void buildFilterFrame();
    void buildChartFrame();
    void connectControls();
    QFrame *addFrame(const char *name);
    QLabel *addLabel(QFrame *frame, const char *name, QWidget *buddy);

    // Layout.
    void applyDesignSize();
    void applyScale();
    void applyMinimumSize();
    void Form_Resize();
    void arrangeControls(const WindowLayout &layout);

    void Form_Unload();

    // Commands.
    void mnuNew_Click();
    void mnuOpen_Click();
    void mnuClean_Click();
    void mnuPRint_Click();
    void mnuImport_Click();
    void mnuExport_Click();
    void mnuExit_Click();
    void mnuOptions_Click();
    void mnuAbout_Click();
    void Toolbar1_ButtonClick(const QString &key);

    // Projects.
    void makeDefaultProject();
    bool openFirstProject();
    bool askAboutBadProject(const Failure &failure);
    bool chooseProjectFile();
    void setProject(const QString &path);
    void useDefaultProject();
    void switchProject(const QString &path, const QString &templatePath);

    // Reports.
    ReportSource reportSource();
    const drawing::Picture *copyChart();

    // Import.
    /// False if the report wasn't read to its end; the message that tells why goes on with `note`.
    bool importReport(const QString &path, const QString &note);
    bool loadDocument(const QString &path, const QString &note);
    bool loadReport(const QString &note);
    /// One after the other; one that fails ends the rest.
    void importReports(const QStringList &paths);

    // Analysis.
    void loadTree();
    void selectRoot();
    void rebuildViews();
    void treeList_NodeClick(TreeNode *node);
    /// Selects the node that a row of the grid stands for; without one it does nothing.
    void openRow(int row);
    /// The menu of the view that has the focus.
    void openContextMenu();
    /// The lines that explain a figure of the grid.
    QStringList figureNotes(int row, int col);
    void fillChart();
    void showChart(const ChartSeries &series);
    ChartRequest chartRequest() const;
    DateRange dateRange() const { return {dtpStart.Value(), dtpEnd.Value()}; }
    float textWidth(const QString &text) const;

    void cboRange_Click();
    void cboLeft_Click();
    void cboGroup_Click();
    void dtpStart_Change();
    void dtpEnd_Change();
    void pickerChanged();
    void setPreset(RangePreset preset);
    void setThisWeek() { setPreset(RangePreset::ThisWeek); }
    void setLastWeek() { setPreset(RangePreset::LastWeek); }
    void setThisMonth() { setPreset(RangePreset::ThisMonth); }
    void setLastMonth() { setPreset(RangePreset::LastMonth); }
    void setAllDates() { setPreset(RangePreset::All); }
    void setRange(const DateRange &range);

    TwipScale m_scale;
    QToolBar *Toolbar1 = nullptr;
    QFrame *Frame1 = nullptr;
    QFrame *Frame2 = nullptr;
    QFrame *Frame3 = nullptr;
    QLabel *lblStart = nullptr;
    QLabel *lblEnd = nullptr;
    QLabel *lblRange = nullptr;
    ElidedLabel *lblSum = nullptr;
    QLabel *lblLeft = nullptr;
    QLabel *lblGroup = nullptr;
    QLabel *picChart = nullptr;
    drawing::Picture m_picture; // what picChart holds, for the report's graph
    // The views of the controls above.
    TreeView *m_treeView = nullptr;
    DatePickerView *m_startView = nullptr;
    DatePickerView *m_endView = nullptr;
    ComboBoxView *m_rangeView = nullptr;
    GridView *m_gridView = nullptr;
    ChartView *m_chartView = nullptr;
    ComboBoxView *m_metricView = nullptr;
    ComboBoxView *m_groupView = nullptr;
    int m_refreshPauses = 0;
    DateRange m_shownRange;             // of the grid's figures
    std::optional<FigureNotes> m_notes; // asked for when a tooltip is first wanted
    LossMarks m_lossMarks;
    bool m_unloaded = false;
    bool m_importing = false;
    bool m_viewBehind = false; // a refresh failed: the view isn't what tree, dates and combos say
    bool m_viewStale = false;  // a switch of projects failed half-way through the view
};

} // namespace veltrona
