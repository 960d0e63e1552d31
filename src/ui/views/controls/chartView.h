// A chart on screen. Takes the chart's onChange; the chart must outlive the view.
#pragma once

#include "core/controls/chart.h"

#include <QImage>
#include <QWidget>

namespace veltrona {

class ChartView : public QWidget {
    Q_OBJECT
public:
    explicit ChartView(Chart &chart, QWidget *parent = nullptr);
    ~ChartView() override;

    const Chart &chart() const { return m_chart; }

    /// The chart at the widget's size, in unscaled pixels and the colours of light paper, whatever
    /// the scale and the palette of the screen.
    QImage picture() const;

    /// What a bar says of itself: label, dates and value, a line for each. Bars count from 0.
    QString barText(int bar) const;
    /// All bars as a table of tabs and lines, headings above.
    QString figuresText() const;
    /// The bar that the keyboard stands on, or -1.
    int markedBar() const { return m_marked; }
    void markBar(int bar);
    /// The whole column of a bar, from the top of the widget to its bottom.
    QRect columnRect(int bar) const;
    /// The bar in whose column a place of the widget lies, or -1.
    int barAt(const QPoint &place) const;

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    bool event(QEvent *event) override;
    void paintEvent(QPaintEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void focusOutEvent(QFocusEvent *event) override;

private:
    void refresh();

    Chart &m_chart;
    int m_marked = -1;
};

} // namespace veltrona
