// The surface of the main window between tool bar and status bar: three frames with the Qt views of
// the tree, the period, the grid and the chart, placed by the rules of the layout.
#pragma once

#include "core/shell/analysisView.h"
#include "core/shell/layout.h"
#include "ui/views/twipScale.h"

#include <QFrame>
#include <QImage>
#include <QLabel>
#include <QWidget>

namespace veltrona {

class ChartView;
class ComboBoxView;
class DatePickerView;
class ElidedLabel;
class GridView;
class TreeView;

class MainSurface : public QWidget {
    Q_OBJECT

public:
    /// The controls must outlive the surface.
    explicit MainSurface(AnalysisControls &controls);

    /// For the analysis view; valid as long as the surface lives.
    AnalysisScreen screen();
    const TwipScale &scale() const { return m_scale; }

    /// Fits everything that `arrange` doesn't place to the window's font, which the twip follows.
    void applyScale(const QFont &font);
    /// Tops in the layout count from below the menu bar; the surface begins below the tool bar.
    void arrange(const WindowLayout &layout, int toolBarHeight);
    /// Commits a date that is typed but not yet confirmed.
    void finishEdits();
    /// The chart's picture, shown in `picChart` too; null if there is none.
    QImage copyChart();

private:
    template<class View, class Control>
    View *add(Control &control, QFrame *frame, const char *name);
    QFrame *addFrame(const char *name);
    void makeRoomForFields();
    QLabel *addLabel(QFrame *frame, const char *name, QWidget *buddy);

    // In the order of their making.
    TwipScale m_scale;
    QFrame *Frame1;
    QFrame *Frame2;
    QFrame *Frame3;
    TreeView *m_tree;
    DatePickerView *m_start;
    DatePickerView *m_end;
    ComboBoxView *m_range;
    GridView *m_grid;
    ChartView *m_chart;
    ComboBoxView *m_metric;
    ComboBoxView *m_group;
    QLabel *lblStart;
    QLabel *lblEnd;
    QLabel *lblRange;
    ElidedLabel *lblSum;
    QLabel *lblLeft;
    QLabel *lblGroup;
    QLabel *picChart;
};

} // namespace veltrona
