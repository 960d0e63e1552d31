#include "core/controls/chartAxis.h"
#include "ui/views/accessible/screenReader.h"
#include "ui/views/accessible/tableAccessible.h"
#include "ui/views/accessible/viewAccessibles.h"
#include "ui/views/controls/chartView.h"

namespace veltrona {

namespace {

enum Column { Dates, Value, Label, Columns };
constexpr const char *columnNames[Columns] = {"Dates", "Value", "Label"};

QString valueOf(const ChartRow &row) {
    if (row.isNull)
        return {};
    return spokenValue(row.value) + (row.hasRecords ? QString() : QStringLiteral(", no records"));
}

class ChartAccessible : public TableAccessible {
public:
    explicit ChartAccessible(ChartView &view)
        : TableAccessible(view, QAccessible::Chart, 0), m_view(view) {}

    QString text(QAccessible::Text kind) const override {
        const QString &series = m_view.chart().SeriesName();
        const QString &description = m_view.chart().texts().description;
        if (kind == QAccessible::Name && !series.isEmpty())
            return series;
        if (kind == QAccessible::Description && !description.isEmpty())
            return description;
        return QAccessibleWidget::text(kind);
    }

    int rowCount() const override { return m_view.chart().RowCount(); }
    int columnCount() const override { return Columns; }
    QString columnDescription(int column) const override {
        return QLatin1String(columnNames[column]);
    }
    QString rowDescription(int row) const override { return cellText(row, Dates); }

    QString cellText(int bar, int column) const override {
        const ChartRow &row = m_view.chart().DataGrid().rows()[static_cast<std::size_t>(bar)];
        const QString &dates = row.dates.isEmpty() ? row.label : row.dates;
        if (column == Label)
            return row.label;
        return column == Dates ? dates : QStringLiteral("%1: %2").arg(dates, valueOf(row));
    }
    QRect cellRect(int bar, int) const override { return m_view.columnRect(bar); }
    QPoint cellAtPlace(const QPoint &place) const override { return {Value, m_view.barAt(place)}; }
    QPoint markedCell() const override { return {Value, m_view.markedBar()}; }

private:
    ChartView &m_view;
};

} // namespace

void installChartAccessible() {
    installAccessible<ChartView, ChartAccessible>();
}

void notifyChartChanged(ChartView &view) {
    if (!QAccessible::isActive())
        return;
    QAccessibleTableModelChangeEvent changed(&view, QAccessibleTableModelChangeEvent::ModelReset);
    QAccessible::updateAccessibility(&changed);
    for (const QAccessible::Event event :
         {QAccessible::NameChanged, QAccessible::DescriptionChanged}) {
        QAccessibleEvent renamed(&view, event);
        QAccessible::updateAccessibility(&renamed);
    }
}

void notifyBarMarked(ChartView &view) {
    if (QAccessibleInterface *chart = accessibleOf(&view))
        notifyFocus(chart->focusChild());
}

} // namespace veltrona
