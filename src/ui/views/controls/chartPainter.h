// Draws a chart on a widget or into a picture. Lengths are device-independent pixels.
#pragma once

#include "core/controls/chart.h"
#include "core/controls/chartAxis.h"

#include <QColor>
#include <QFont>
#include <QRectF>

class QPaintDevice;
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
    QFont font;      // grown with the chart's width
    double gap = 0;  // between texts and their neighbours
    double line = 1; // thickness
    QRectF plot;     // between the axes
    AxisScale scale;
    int bars = 0;
    int labelStep = 1;

    double y(double value) const;
    /// The part of the plot of bar `bar`, counted from 0.
    QRectF column(int bar) const;
    /// The bar at `x`, or -1.
    int barAt(double x) const;
};

/// On a wide area letters, lines and gaps are larger, so that the picture stays legible in a
/// report, which shrinks it to its page: from 1,200 pixels on for letters of 12 pixels, in
/// proportion for larger ones, and up to twice their size.
ChartLayout layOutChart(const QFont &font, const QPaintDevice *device, const QRectF &area,
                        const Chart &chart);

/// Draws with the painter's font, grown like the layout's. `marked` is the current bar, or -1.
void paintChart(QPainter &painter, const QRect &area, const Chart &chart, const ChartColors &colors,
                int marked = -1);

/// Draws the texts on a painted chart: the note beside its title, the notice in place of bars.
void paintTexts(QPainter &painter, const QRect &area, const Chart &chart,
                const ChartColors &colors);

} // namespace veltrona
