// Draws a chart on a widget or into a picture. Lengths are device-independent pixels.
#pragma once

#include "core/controls/chart.h"
#include "core/controls/chartAxis.h"

#include <QColor>
#include <QRectF>

class QFontMetricsF;
class QPainter;
class QPalette;

namespace veltrona {

struct ChartColors {
    QColor paper;
    QColor text;
    QColor line;
    QColor bar;
    QColor mark; // the current bar

    static ChartColors ofPalette(const QPalette &palette);
    static ChartColors lightPaper();
};

struct ChartLayout {
    QRectF plot; // between the axes
    AxisScale scale;
    int bars = 0;
    int labelStep = 1;

    double y(double value) const;
    /// The part of the plot of bar `bar`, counted from 0.
    QRectF column(int bar) const;
    /// The bar at `x`, or -1.
    int barAt(double x) const;
};

ChartLayout layOutChart(const QFontMetricsF &metrics, const QRectF &area, const Chart &chart);

/// Draws with the painter's font. `marked` is the current bar, or -1.
void paintChart(QPainter &painter, const QRect &area, const Chart &chart, const ChartColors &colors,
                int marked = -1);

/// Draws the texts on a painted chart: the note beside its title, the notice in place of bars.
void paintTexts(QPainter &painter, const QRect &area, const Chart &chart,
                const ChartColors &colors);

} // namespace veltrona
