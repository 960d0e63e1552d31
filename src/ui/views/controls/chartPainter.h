// How a chart is drawn, on a widget or into a picture. All lengths are device-independent pixels.
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
    QColor mark; // the bar that the keyboard stands on

    static ChartColors ofPalette(const QPalette &palette);
    static ChartColors lightPaper();
};

struct ChartLayout {
    QRectF plot; // between the axes
    AxisScale scale;
    int bars = 0;
    int labelStep = 1;

    double y(double value) const;
    /// The part of the plot that belongs to bar `bar`, counted from 0.
    QRectF column(int bar) const;
    /// The bar over or under which `x` lies, or -1.
    int barAt(double x) const;
};

ChartLayout layOutChart(const QFontMetricsF &metrics, const QRectF &area, const Chart &chart);

/// Draws with the painter's font. `marked` counts from 0; -1 marks none.
void paintChart(QPainter &painter, const QRect &area, const Chart &chart, const ChartColors &colors,
                int marked = -1);

/// Over a chart painted there: the note beside its title, the notice where there are no bars.
void paintWords(QPainter &painter, const QRect &area, const Chart &chart,
                const ChartColors &colors);

} // namespace veltrona
