// A control that is a table for screen readers. Its cells read the control live; Qt's cache owns
// them, and the table has it release them.
#pragma once

#include <QAccessibleWidget>
#include <QWidget>

#include <unordered_map>

namespace veltrona {

class TableAccessible : public QAccessibleWidget, public QAccessibleTableInterface {
public:
    /// `headers` is 1 if there are headings above the columns and names beside the rows, else 0.
    TableAccessible(QWidget &view, QAccessible::Role role, int headers)
        : QAccessibleWidget(&view, role), m_headers(headers) {}
    ~TableAccessible() override;

    /// What a cell says. Row -1 holds the headings, column -1 the names of the rows.
    virtual QString cellText(int row, int column) const = 0;
    virtual QString cellDescription(int, int) const { return {}; }
    virtual QRect cellRect(int row, int column) const = 0; // of the control
    /// x: the column, y: the row at a place of the control; -1 where there is none.
    virtual QPoint cellAtPlace(const QPoint &place) const = 0;
    /// The same for the cell that has the keyboard focus.
    virtual QPoint markedCell() const = 0;
    virtual bool isCellSelected(int row, int column) const;
    /// A reader that reads a whole row leaves these out.
    virtual bool isLeftOut(int, int) const { return false; }

    void *interface_cast(QAccessible::InterfaceType type) override;
    int childCount() const override;
    QAccessibleInterface *child(int index) const override;
    int indexOfChild(const QAccessibleInterface *child) const override;
    QAccessibleInterface *childAt(int x, int y) const override;
    QAccessibleInterface *focusChild() const override;

    QAccessibleInterface *cellAt(int row, int column) const override;
    QString columnDescription(int column) const override { return cellText(-1, column); }
    QString rowDescription(int row) const override { return cellText(row, -1); }

    /// Screen readers cache cells: releases those of a row, except in two columns, so that they are
    /// read anew.
    void forgetRow(int row, int oneColumn, int otherColumn);

    bool hasHeaders() const { return m_headers == 1; }
    QPoint toScreen(const QPoint &place) const { return widget()->mapToGlobal(place); }

    QAccessibleInterface *caption() const override { return nullptr; }
    QAccessibleInterface *summary() const override { return nullptr; }
    int selectedCellCount() const override { return 0; }
    QList<QAccessibleInterface *> selectedCells() const override { return {}; }
    int selectedColumnCount() const override { return 0; }
    int selectedRowCount() const override { return 0; }
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
    int indexOf(int row, int column) const;

    const int m_headers;
    mutable std::unordered_map<int, QAccessible::Id> m_cells; // by child index, made when asked for
};

} // namespace veltrona
