#include "ui/views/controls/chartView.h"

#include "core/base/text.h"
#include "ui/views/accessible/announcement.h"
#include "ui/views/accessible/viewAccessibles.h"
#include "ui/views/controls/chartPainter.h"
#include "ui/views/menuEntry.h"
#include "ui/views/plainText.h"

#include <QClipboard>
#include <QContextMenuEvent>
#include <QGuiApplication>
#include <QHelpEvent>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QToolTip>

#include <algorithm>
#include <cmath>

namespace veltrona {

ChartView::ChartView(Chart &chart, QWidget *parent)
    : QWidget(parent), m_chart(chart), m_onChange(chart.onChange, [this] { refresh(); }) {
    installChartAccessible();
    setFocusPolicy(Qt::StrongFocus);
    setAttribute(Qt::WA_OpaquePaintEvent);
    addEntry(*this, "Show These Days", {QKeySequence(Qt::Key_Return), QKeySequence(Qt::Key_Enter)},
             [this] { chooseBar(m_marked); });
    addEntry(*this, "Back to the Days Before", {QKeySequence(Qt::ALT | Qt::Key_Left)},
             [this] { goBack(); });
    addExplainEntry(*this, [this] { explain(); });
    addCopyEntries(
        *this, "Copy Picture",
        [this] {
            QGuiApplication::clipboard()->setImage(picture());
            announceCopy(*this);
        },
        "Copy Figures",
        [this] {
            QGuiApplication::clipboard()->setText(figuresText());
            announceCopy(*this);
        });
}

void ChartView::refresh() {
    if (m_marked >= m_chart.RowCount())
        m_marked = -1;
    update();
    notifyChartChanged(*this);
}

void ChartView::paintEvent(QPaintEvent *) {
    QPainter painter(this);
    const ChartColors colors = ChartColors::ofPalette(palette());
    paintChart(painter, rect(), m_chart, colors, m_marked);
    paintTexts(painter, rect(), m_chart, colors);
    if (hasFocus()) {
        painter.setPen(palette().color(QPalette::Highlight));
        painter.drawRect(rect().adjusted(0, 0, -1, -1));
    }
}

QImage ChartView::picture() const {
    QImage image(size().expandedTo({1, 1}), QImage::Format_RGB32);
    // At 96 pixels per inch, whatever the screen's resolution.
    QFont unscaled = font();
    if (unscaled.pointSizeF() > 0)
        unscaled.setPixelSize(static_cast<int>(std::lround(unscaled.pointSizeF() * 96 / 72)));
    unscaled.setHintingPreference(QFont::PreferNoHinting); // hinting depends on the scale
    QPainter painter(&image);
    painter.setFont(unscaled);
    paintChart(painter, image.rect(), m_chart, ChartColors::lightPaper());
    return image;
}

int ChartView::barAt(const QPoint &place) const {
    return layOutChart(font(), this, rect(), m_chart).barAt(place.x());
}

QRect ChartView::columnRect(int bar) const {
    const ChartLayout layout = layOutChart(font(), this, rect(), m_chart);
    const QRect column = layout.column(bar).toAlignedRect();
    return {column.left(), 0, column.width(), height()};
}

QString ChartView::barText(int bar) const {
    const ChartRow &row = m_chart.DataGrid().rows().at(static_cast<std::size_t>(bar));
    QStringList lines{row.label};
    if (!row.dates.isEmpty())
        lines.append(row.dates);
    QString value = row.isNull ? u"\u2013"_s : valueText(row.value);
    if (!row.hasRecords)
        value += " (no records)";
    const QString &series = m_chart.SeriesName();
    lines.append(series.isEmpty() ? value : series + ": " + value);
    return lines.join(u'\n');
}

QString ChartView::figuresText() const {
    QString text = "Bar\tDates\t" + m_chart.SeriesName();
    for (const ChartRow &row : m_chart.DataGrid().rows())
        text += u'\n' + row.label + u'\t' + row.dates + u'\t' +
                (row.isNull ? QString() : QString::number(row.value, 'g', 15));
    return text;
}

bool ChartView::event(QEvent *event) {
    if (event->type() == QEvent::ContextMenu) {
        // The entries of the menu are about the bar under the mouse.
        const auto *menu = static_cast<QContextMenuEvent *>(event);
        if (menu->reason() == QContextMenuEvent::Mouse) {
            m_marked = barAt(menu->pos());
            update();
        }
    }
    if (event->type() != QEvent::ToolTip)
        return QWidget::event(event);
    const auto *help = static_cast<QHelpEvent *>(event);
    const int bar = barAt(help->pos());
    if (bar < 0)
        QToolTip::hideText();
    else
        QToolTip::showText(help->globalPos(), plainToolTip(barText(bar)), this, columnRect(bar));
    return true;
}

void ChartView::keyPressEvent(QKeyEvent *event) {
    const int last = m_chart.RowCount() - 1;
    switch (event->key()) {
    case Qt::Key_Left:
        return markBar(m_marked < 0 ? last : std::max(0, m_marked - 1));
    case Qt::Key_Right:
        return markBar(std::min(last, m_marked + 1));
    case Qt::Key_Home:
        return markBar(std::min(last, 0));
    case Qt::Key_End:
        return markBar(last);
    default:
        QWidget::keyPressEvent(event);
    }
}

void ChartView::markBar(int bar) {
    m_marked = bar >= 0 && bar < m_chart.RowCount() ? bar : -1;
    update();
    if (m_marked < 0)
        return;
    const QRect column = columnRect(m_marked);
    QToolTip::showText(mapToGlobal(QPoint(column.center().x(), height() / 3)),
                       plainToolTip(barText(m_marked)), this, column);
    notifyBarMarked(*this);
}

void ChartView::mouseDoubleClickEvent(QMouseEvent *event) {
    const int bar = barAt(event->position().toPoint());
    if (event->button() == Qt::LeftButton && bar >= 0)
        chooseBar(bar);
}

void ChartView::chooseBar(int bar) {
    if (bar < 0)
        answer("No bar is marked; the arrow keys mark one.");
    else if (m_chart.onBarChosen)
        m_chart.onBarChosen(bar);
}

void ChartView::goBack() {
    if (m_chart.onDaysBack && !m_chart.onDaysBack())
        answer("No bar's days have been shown before.");
}

void ChartView::explain() {
    answer(m_marked < 0 ? m_chart.texts().description : barText(m_marked));
}

void ChartView::answer(const QString &text) {
    const QRect place = m_marked < 0 ? rect() : columnRect(m_marked);
    answerByKey(*this, QRect(place.left(), 0, place.width(), height() / 3), text);
}

void ChartView::focusOutEvent(QFocusEvent *event) {
    if (event->reason() == Qt::PopupFocusReason)
        return QWidget::focusOutEvent(event);
    m_marked = -1;
    QToolTip::hideText();
    QWidget::focusOutEvent(event);
}

} // namespace veltrona
