// The bars of the chart: one metric of a node, period by period, at most `maxBars` bars unless they
// are years.
#pragma once

#include "core/analysis/chart/chartPeriods.h"
#include "core/analysis/records/nodePath.h"
#include "core/base/dateValue.h"
#include "core/controls/chart.h"
#include "core/database/projectRecords.h"

#include <QString>
#include <QStringList>

#include <vector>

namespace veltrona {

/// The captions of the metric combo, by index.
QStringList chartMetrics();

struct ChartRequest {
    int metric = 0;
    int grouping = 0; // index of the requested unit
    DateRange range;
    bool allDates = false; // use the table's first and last date instead
    NodePath path;         // the selected node
};

struct ChartSeries {
    DateRange range; // in force; written back to the pickers for "All"
    ChartPeriods periods;
    QString metric; // its caption
    std::vector<ChartBar> bars;
    ChartTexts texts;
};

/// Throws Failure; touches no control.
ChartSeries queryChartSeries(ProjectRecords &records, const ChartRequest &request);
/// Copies the bars into the chart.
void showSeries(const ChartSeries &series, Chart &chart);

} // namespace veltrona
