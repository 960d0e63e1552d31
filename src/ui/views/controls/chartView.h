// The view of a chart, which must outlive it. Sets the chart's onChange.
#pragma once

#include "core/controls/chart.h"

#include <QImage>
#include <QRect>
#include <QScopedValueRollback>
#include <QString>
#include <QWidget>

#include <functional>

namespace veltrona {

class ChartView : public QWidget {
    Q_OBJECT
public:
    explicit ChartView(Chart &chart, QWidget *parent = nullptr);

    const Chart &chart() const { return m_chart; }

    /// The chart at the widget's size, in unscaled pixels and light colours, whatever the scale and
    /// the palette of the screen.
    QImage picture() const;

    /// Tooltip of a bar: label, dates and value, a line each. Bars count from 0.
    QString barText(int bar) const;
    /// All bars as tab-separated lines, with headings.
    QString figuresText() const;
    /// The current bar of the keyboard, or -1.
    int markedBar() const { return m_marked; }
    void markBar(int bar);
    /// The column of a bar, at the full height of the widget.
    QRect columnRect(int bar) const;
    /// The bar at a position of the widget, or -1.
    int barAt(const QPoint &place) const;

protected:
    bool event(QEvent *event) override;
    void paintEvent(QPaintEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void mouseDoubleClickEvent(QMouseEvent *event) override;
    void focusOutEvent(QFocusEvent *event) override;

private:
    void refresh();
    void chooseBar(int bar);
    void goBack();
    /// By key: the tooltip of the marked bar, or else all about the chart.
    void explain();
    void answer(const QString &text);

    Chart &m_chart;
    int m_marked = -1;
    QScopedValueRollback<std::function<void()>> m_onChange; // the chart's
};

} // namespace veltrona
