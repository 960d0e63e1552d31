#include "ui/views/controls/chartPainter.h"

#include "ui/views/colors.h"

#include <QFontInfo>
#include <QFontMetricsF>
#include <QPainter>
#include <QPalette>

#include <algorithm>
#include <cmath>

namespace veltrona {

namespace {

// The axes stay where they are in right-to-left windows too.
constexpr int absolute = Qt::AlignAbsolute | Qt::TextSingleLine;
constexpr double usualGap = 6;
constexpr double maxBarWidthInGaps = 16; // a wider single bar would look like a background

ChartColors colorsOn(const QColor &paper, const QColor &text) {
    const QColor blue(47, 109, 181);
    constexpr double visible = 3; // contrast that graphics need, less than text
    const QColor bar = readableColor(blue, paper, visible);
    return {paper, text, mixed(paper, text, 0.18), bar, mixed(bar, text, 0.45)};
}

double growthOn(const QFont &font, const QPaintDevice *device, double width) {
    constexpr double usualWidth = 1200;
    constexpr double usualLetters = 12;
    constexpr double maxGrowth = 2;
    constexpr double steps = 6; // so that nothing trembles while the window is resized
    const double letters = QFontInfo(QFont(font, device)).pixelSize() / usualLetters;
    const double growth = width / (usualWidth * std::max(1., letters));
    return std::clamp(std::floor(growth * steps) / steps, 1., maxGrowth);
}

QFont grownFont(QFont font, double growth) {
    if (growth == 1)
        return font;
    if (font.pointSizeF() > 0)
        font.setPointSizeF(font.pointSizeF() * growth);
    else
        font.setPixelSize(static_cast<int>(std::lround(font.pixelSize() * growth)));
    return font;
}

/// From the bottom of the plot to the labels of the bars, which may be below the lowest number.
double labelDrop(const QFontMetricsF &metrics) {
    return std::ceil(metrics.height() / 2) + 1;
}

double widestLabel(const QFontMetricsF &metrics, const Chart &chart) {
    double widest = 0;
    for (const ChartRow &row : chart.DataGrid().rows())
        widest = std::max(widest, metrics.horizontalAdvance(row.label));
    return std::ceil(widest);
}

AxisScale scaleOf(const Chart &chart, int maxSteps) {
    double low = 0;
    double high = 0;
    for (const ChartRow &row : chart.DataGrid().rows()) {
        if (row.isNull || !std::isfinite(row.value))
            continue;
        low = std::min(low, row.value);
        high = std::max(high, row.value);
    }
    return axisScale(low, high, maxSteps);
}

/// The position of the nearest device pixel, for sharp edges.
double snapped(const QPainter &painter, double position) {
    const double ratio = painter.device()->devicePixelRatioF();
    return std::round(position * ratio) / ratio;
}

void paintLines(QPainter &painter, const ChartLayout &layout, const QRectF &area,
                const ChartColors &colors) {
    const QFontMetricsF metrics(painter.font(), painter.device());
    for (int line = layout.scale.first; line <= layout.scale.last; ++line) {
        const double y = snapped(painter, layout.y(layout.scale.step * line));
        painter.fillRect(QRectF(layout.plot.left(), y, layout.plot.width(), layout.line),
                         line == 0 ? mixed(colors.line, colors.text, 0.5) : colors.line);
        const QRectF text(area.left(), y - metrics.height() / 2,
                          layout.plot.left() - layout.gap - area.left(), metrics.height());
        painter.drawText(text, absolute | Qt::AlignRight | Qt::AlignVCenter,
                         axisText(layout.scale, line));
    }
}

void paintBars(QPainter &painter, const ChartLayout &layout, const Chart &chart,
               const ChartColors &colors, int marked) {
    const double zero = snapped(painter, layout.y(0));
    for (int bar = 0; bar < layout.bars; ++bar) {
        const ChartRow &row = chart.DataGrid().rows()[static_cast<std::size_t>(bar)];
        const QRectF column = layout.column(bar);
        if (bar == marked)
            painter.fillRect(column, mixed(colors.paper, colors.text, 0.1));
        if (row.isNull || !std::isfinite(row.value) || row.value == 0)
            continue;
        const double width = std::min(maxBarWidthInGaps * layout.gap, column.width() * 0.75);
        const double left = snapped(painter, column.center().x() - width / 2);
        const double right = std::max(left + 1, snapped(painter, column.center().x() + width / 2));
        const double end = snapped(painter, layout.y(row.value));
        // Even the smallest value is visible.
        const double height = std::max(layout.line, std::fabs(end - zero));
        const double top = row.value > 0 ? zero - height : zero + layout.line;
        painter.fillRect(QRectF(left, top, right - left, height),
                         bar == marked ? colors.mark : colors.bar);
    }
}

void paintLabels(QPainter &painter, const ChartLayout &layout, const Chart &chart) {
    const QFontMetricsF metrics(painter.font(), painter.device());
    for (int bar = 0; bar < layout.bars; bar += layout.labelStep) {
        const QString &label = chart.DataGrid().rows()[static_cast<std::size_t>(bar)].label;
        const double width = metrics.horizontalAdvance(label) + 2;
        const double x = layout.column(bar).center().x();
        painter.drawText(QRectF(x - width / 2, layout.plot.bottom() + labelDrop(metrics), width,
                                metrics.height()),
                         Qt::AlignCenter | Qt::TextSingleLine | Qt::TextDontClip, label);
    }
}

QRectF titleRow(const QFontMetricsF &metrics, const ChartLayout &layout, const QRectF &area) {
    return {layout.plot.left(), area.top() + layout.gap,
            area.right() - layout.gap - layout.plot.left(), metrics.height()};
}

bool hasBars(const Chart &chart) {
    const std::vector<ChartRow> &rows = chart.DataGrid().rows();
    return std::ranges::any_of(rows,
                               [](const ChartRow &row) { return !row.isNull && row.value != 0; });
}

} // namespace

ChartColors ChartColors::ofPalette(const QPalette &palette) {
    return colorsOn(palette.color(QPalette::Base), palette.color(QPalette::Text));
}

ChartColors ChartColors::lightPaper() {
    return colorsOn(Qt::white, QColor(0x20, 0x20, 0x20));
}

double ChartLayout::y(double value) const {
    const double part = (value / scale.step - scale.first) / (scale.last - scale.first);
    return plot.bottom() - part * plot.height();
}

QRectF ChartLayout::column(int bar) const {
    const double width = plot.width() / bars;
    return {plot.left() + bar * width, plot.top(), width, plot.height()};
}

int ChartLayout::barAt(double x) const {
    if (bars == 0 || x < plot.left() || x >= plot.right())
        return -1;
    return std::min(bars - 1, static_cast<int>((x - plot.left()) / (plot.width() / bars)));
}

ChartLayout layOutChart(const QFont &font, const QPaintDevice *device, const QRectF &area,
                        const Chart &chart) {
    const double growth = growthOn(font, device, area.width());
    ChartLayout layout;
    layout.font = grownFont(font, growth);
    layout.gap = usualGap * growth;
    layout.line = std::round(growth);
    const QFontMetricsF metrics(layout.font, device);
    const double gap = layout.gap;
    layout.bars = chart.RowCount();
    const double title = chart.SeriesName().isEmpty() ? 0 : metrics.height() + gap;
    QRectF plot = area.adjusted(gap, gap + title + metrics.height() / 2, -gap,
                                -(metrics.height() + labelDrop(metrics) + gap));
    const int maxSteps =
        std::clamp(static_cast<int>(plot.height() / (2.5 * metrics.height())), 2, 10);
    layout.scale = scaleOf(chart, maxSteps);
    double numbers = 0;
    for (int line = layout.scale.first; line <= layout.scale.last; ++line)
        numbers = std::max(numbers, metrics.horizontalAdvance(axisText(layout.scale, line)));
    // The outermost labels may be wider than their columns, but must stay within the area.
    const double label = widestLabel(metrics, chart);
    plot.setLeft(plot.left() + std::ceil(numbers) + gap);
    const double overhang = layout.bars == 0 ? 0 : (label - plot.width() / layout.bars) / 2;
    if (overhang > 0) {
        plot.setRight(plot.right() - overhang);
        plot.setLeft(std::max(plot.left(), area.left() + gap + overhang));
    }
    layout.plot = plot;
    if (layout.bars > 0)
        layout.labelStep = labelStep(plot.width() / layout.bars, label, 2 * gap);
    return layout;
}

void paintChart(QPainter &painter, const QRect &area, const Chart &chart, const ChartColors &colors,
                int marked) {
    painter.fillRect(area, colors.paper);
    painter.setPen(colors.text);
    const ChartLayout layout = layOutChart(painter.font(), painter.device(), area, chart);
    if (layout.plot.width() < 1 || layout.plot.height() < 1)
        return;
    painter.save();
    painter.setFont(layout.font);
    const QFontMetricsF metrics(layout.font, painter.device());
    const QRectF title = titleRow(metrics, layout, area);
    painter.drawText(title, absolute | Qt::AlignLeft,
                     metrics.elidedText(chart.SeriesName(), Qt::ElideRight, title.width()));
    paintLines(painter, layout, area, colors);
    paintBars(painter, layout, chart, colors, marked);
    paintLabels(painter, layout, chart);
    painter.restore();
}

void paintTexts(QPainter &painter, const QRect &area, const Chart &chart,
                const ChartColors &colors) {
    const ChartLayout layout = layOutChart(painter.font(), painter.device(), area, chart);
    if (layout.plot.width() < 1 || layout.plot.height() < 1)
        return;
    painter.save();
    painter.setFont(layout.font);
    const QFontMetricsF metrics(layout.font, painter.device());
    const double gap = layout.gap;
    const bool bars = hasBars(chart);
    const QString &notice = chart.texts().notice;
    QRectF beside = titleRow(metrics, layout, area);
    beside.setLeft(beside.left() + metrics.horizontalAdvance(chart.SeriesName()) + 4 * gap);
    painter.setPen(mixed(colors.paper, colors.text, 0.7));
    const QString note = bars && !notice.isEmpty() ? notice : chart.texts().note;
    if (beside.width() > 0)
        painter.drawText(beside, absolute | Qt::AlignRight,
                         metrics.elidedText(note, Qt::ElideRight, beside.width()));
    if (!bars && !notice.isEmpty()) {
        constexpr int wrapped = Qt::AlignCenter | Qt::TextWordWrap;
        const QRectF room = layout.plot.adjusted(2 * gap, 2 * gap, -2 * gap, -2 * gap);
        const QRectF text = metrics.boundingRect(room, wrapped, notice);
        painter.fillRect(text.adjusted(-gap, -gap, gap, gap), colors.paper);
        painter.setPen(colors.text);
        painter.drawText(room, wrapped, notice);
    }
    painter.restore();
}

} // namespace veltrona
