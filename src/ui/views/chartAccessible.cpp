#include "ui/views/chartAccessible.h"

#include "core/controls/chartAxis.h"
#include "ui/views/chartView.h"

#include <QAccessible>
#include <QAccessibleWidget>

#include <vector>

namespace veltrona {

namespace {

constexpr int columns = 2; // label and value

class ChartAccessible;

/// Reads its bar live; invalid while the chart has fewer bars. Owned by the toolkit's cache, which
/// ChartAccessible tells to let go of it.
class ChartCell : public QAccessibleInterface, public QAccessibleTableCellInterface {
public:
    ChartCell(ChartView &view, int bar, int column) : m_view(view), m_bar(bar), m_column(column) {}

    bool isValid() const override { return m_bar < m_view.chart().RowCount(); }
    QObject *object() const override { return nullptr; }
    QAccessibleInterface *childAt(int, int) const override { return nullptr; }
    QAccessibleInterface *parent() const override {
        return QAccessible::queryAccessibleInterface(&m_view);
    }
    QAccessibleInterface *child(int) const override { return nullptr; }
    int childCount() const override { return 0; }
    int indexOfChild(const QAccessibleInterface *) const override { return -1; }
    QAccessible::Role role() const override { return QAccessible::Cell; }
    void setText(QAccessible::Text, const QString &) override {}

    QString text(QAccessible::Text kind) const override {
        if (!isValid())
            return {};
        const ChartRow &row = m_view.chart().DataGrid().rows()[static_cast<std::size_t>(m_bar)];
        if (kind == QAccessible::Name)
            return m_column == 0 ? row.label : row.isNull ? QString() : valueText(row.value);
        if (kind == QAccessible::Description)
            return m_column == 0 ? row.dates : m_view.chart().SeriesName();
        return {};
    }

    QRect rect() const override {
        const QRect column = m_view.columnRect(m_bar);
        return {m_view.mapToGlobal(column.topLeft()), column.size()};
    }

    QAccessible::State state() const override {
        QAccessible::State state;
        state.readOnly = true;
        state.focusable = true;
        state.invalid = !isValid();
        state.focused = m_view.hasFocus() && m_view.markedBar() == m_bar;
        return state;
    }

    void *interface_cast(QAccessible::InterfaceType type) override {
        return type == QAccessible::TableCellInterface
                   ? static_cast<QAccessibleTableCellInterface *>(this)
                   : nullptr;
    }

    bool isSelected() const override { return m_view.markedBar() == m_bar; }
    QList<QAccessibleInterface *> columnHeaderCells() const override { return {}; }
    QList<QAccessibleInterface *> rowHeaderCells() const override { return {}; }
    int columnIndex() const override { return m_column; }
    int rowIndex() const override { return m_bar; }
    int columnExtent() const override { return 1; }
    int rowExtent() const override { return 1; }
    QAccessibleInterface *table() const override { return parent(); }

private:
    ChartView &m_view;
    int m_bar;
    int m_column;
};

class ChartAccessible : public QAccessibleWidget, public QAccessibleTableInterface {
public:
    explicit ChartAccessible(ChartView &view)
        : QAccessibleWidget(&view, QAccessible::Chart), m_view(view) {}
    ~ChartAccessible() override {
        for (const QAccessible::Id id : m_cells)
            QAccessible::deleteAccessibleInterface(id);
    }

    QString text(QAccessible::Text kind) const override {
        const QString &series = m_view.chart().SeriesName();
        return kind == QAccessible::Name && !series.isEmpty() ? series
                                                              : QAccessibleWidget::text(kind);
    }
    void *interface_cast(QAccessible::InterfaceType type) override {
        return type == QAccessible::TableInterface ? static_cast<QAccessibleTableInterface *>(this)
                                                   : QAccessibleWidget::interface_cast(type);
    }

    int childCount() const override { return rowCount() * columns; }
    QAccessibleInterface *child(int index) const override {
        return index < 0 ? nullptr : cellAt(index / columns, index % columns);
    }
    int indexOfChild(const QAccessibleInterface *child) const override {
        auto *cell = const_cast<QAccessibleInterface *>(child)->tableCellInterface();
        return cell ? cell->rowIndex() * columns + cell->columnIndex() : -1;
    }
    QAccessibleInterface *childAt(int x, int y) const override {
        for (int bar = 0; bar < rowCount(); ++bar) {
            QAccessibleInterface *value = cellAt(bar, 1);
            if (value->rect().contains(x, y))
                return value;
        }
        return nullptr;
    }
    QAccessibleInterface *focusChild() const override {
        return m_view.hasFocus() && m_view.markedBar() >= 0 ? cellAt(m_view.markedBar(), 1)
                                                            : nullptr;
    }

    QAccessibleInterface *caption() const override { return nullptr; }
    QAccessibleInterface *summary() const override { return nullptr; }
    QAccessibleInterface *cellAt(int row, int column) const override {
        if (row < 0 || row >= rowCount() || column < 0 || column >= columns)
            return nullptr;
        const auto index =
            static_cast<std::size_t>(row) * columns + static_cast<std::size_t>(column);
        for (std::size_t next = m_cells.size(); next <= index; ++next) {
            const int cell = static_cast<int>(next);
            m_cells.push_back(QAccessible::registerAccessibleInterface(
                new ChartCell(m_view, cell / columns, cell % columns)));
        }
        return QAccessible::accessibleInterface(m_cells[index]);
    }
    int selectedCellCount() const override { return 0; }
    QList<QAccessibleInterface *> selectedCells() const override { return {}; }
    QString columnDescription(int column) const override {
        return column == 0 ? QStringLiteral("Label") : QStringLiteral("Value");
    }
    QString rowDescription(int row) const override {
        const QAccessibleInterface *label = cellAt(row, 0);
        return label ? label->text(QAccessible::Name) : QString();
    }
    int selectedColumnCount() const override { return 0; }
    int selectedRowCount() const override { return 0; }
    int columnCount() const override { return columns; }
    int rowCount() const override { return m_view.chart().RowCount(); }
    QList<int> selectedColumns() const override { return {}; }
    QList<int> selectedRows() const override { return {}; }
    bool isColumnSelected(int) const override { return false; }
    bool isRowSelected(int) const override { return false; }
    bool selectRow(int) override { return false; }
    bool selectColumn(int) override { return false; }
    bool unselectRow(int) override { return false; }
    bool unselectColumn(int) override { return false; }
    void modelChange(QAccessibleTableModelChangeEvent *) override {}

private:
    ChartView &m_view;
    mutable std::vector<QAccessible::Id> m_cells; // by row and column, made when asked for
};

QAccessibleInterface *chartFactory(const QString &, QObject *object) {
    auto *view = qobject_cast<ChartView *>(object);
    return view ? new ChartAccessible(*view) : nullptr;
}

} // namespace

void installChartAccessible() {
    QAccessible::installFactory(chartFactory);
}

void tellChartChanged(ChartView &view) {
    if (!QAccessible::isActive())
        return;
    QAccessibleTableModelChangeEvent changed(&view, QAccessibleTableModelChangeEvent::ModelReset);
    QAccessible::updateAccessibility(&changed);
    QAccessibleEvent renamed(&view, QAccessible::NameChanged);
    QAccessible::updateAccessibility(&renamed);
}

void tellBarMarked(ChartView &view) {
    QAccessibleInterface *chart =
        QAccessible::isActive() ? QAccessible::queryAccessibleInterface(&view) : nullptr;
    QAccessibleInterface *cell = chart ? chart->focusChild() : nullptr;
    if (!cell)
        return;
    QAccessibleEvent focused(cell, QAccessible::Focus);
    QAccessible::updateAccessibility(&focused);
}

} // namespace veltrona
