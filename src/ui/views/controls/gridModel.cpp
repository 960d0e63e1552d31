#include "ui/views/controls/gridModel.h"

#include "core/base/text.h"

#include <QHash>
#include <QSet>

#include <algorithm>

namespace veltrona {

namespace {

constexpr int leftAligned = 0;

bool looksLikeNumber(QStringView text) {
    return !text.isEmpty() && std::ranges::all_of(text, [](QChar c) {
        return (c >= u'0' && c <= u'9') || QStringView(u"+-.%E").contains(c);
    });
}

QStringList namesOf(const Grid &grid) {
    QStringList names;
    names.reserve(grid.Rows());
    for (int row = gridRow::FirstData; row < grid.Rows(); ++row)
        names.append(grid.TextMatrix(row, Grid::NameColumn));
    return names;
}

} // namespace

GridModel::GridModel(Grid &grid, QObject *parent)
    : QAbstractTableModel(parent), m_grid(grid), m_names(namesOf(grid)),
      m_rows(static_cast<int>(m_names.size())) {}

int GridModel::rowCount(const QModelIndex &parent) const {
    return parent.isValid() ? 0 : m_rows;
}

int GridModel::columnCount(const QModelIndex &parent) const {
    return parent.isValid() ? 0 : m_grid.shownColumns();
}

// The view may repaint before it is notified that the grid has fewer rows.
bool GridModel::holds(const QModelIndex &index) const {
    return index.isValid() && gridRowOf(index.row()) < m_grid.Rows();
}

Rgb GridModel::cellColor(const QModelIndex &index) const {
    return holds(index) ? m_grid.cellColor(gridRowOf(index.row()), index.column())
                        : m_grid.ForeColor();
}

bool GridModel::isLoss(const QModelIndex &index) const {
    return holds(index) && m_grid.isLoss(gridRowOf(index.row()));
}

Qt::Alignment GridModel::alignment(const QModelIndex &index) const {
    const bool right = m_grid.ColAlignment(index.column()) != leftAligned &&
                       looksLikeNumber(m_grid.text(gridRowOf(index.row()), index.column()));
    return (right ? Qt::AlignRight : Qt::AlignLeft) | Qt::AlignVCenter;
}

QVariant GridModel::data(const QModelIndex &index, int role) const {
    if (!holds(index))
        return {};
    switch (role) {
    case Qt::DisplayRole:
        return m_grid.TextMatrix(gridRowOf(index.row()), index.column());
    case Qt::TextAlignmentRole:
        return QVariant::fromValue(alignment(index));
    case Qt::ToolTipRole:
        return toolTip(index);
    case Qt::AccessibleDescriptionRole:
        return description(index);
    default:
        return {};
    }
}

// With name and heading, which may have scrolled away.
QString GridModel::toolTip(const QModelIndex &index) const {
    constexpr int maxName = 200; // leaves room for the lines that follow
    const int row = gridRowOf(index.row());
    const QString figure = m_grid.TextMatrix(row, index.column());
    if (index.column() == Grid::NameColumn)
        return m_grid.isLoss(row) ? notes(row, index.column()).join(u'\n') : QString();
    if (figure.isEmpty())
        return {};
    QStringList lines{shortened(m_grid.TextMatrix(row, Grid::NameColumn), maxName),
                      m_grid.TextMatrix(gridRow::Heading, index.column()) + u": "_s + figure};
    return (lines + notes(row, index.column())).join(u'\n');
}

/// The heading's note comes with the first cell of its column, the notice with the very first.
QString GridModel::description(const QModelIndex &index) const {
    const int row = gridRowOf(index.row());
    const bool hasNotes = index.column() == Grid::NameColumn
                              ? m_grid.isLoss(row)
                              : !m_grid.text(row, index.column()).isEmpty();
    QStringList lines = hasNotes ? notes(row, index.column()) : QStringList();
    const bool isFirst = row == gridRow::FirstData;
    if (isFirst && index.column() == Grid::NameColumn && !m_grid.notice().isEmpty())
        lines.append(m_grid.notice());
    else if (isFirst)
        lines.append(columnNote(index.column()));
    return lines.join(u'\n');
}

QString GridModel::explanation(const QModelIndex &index) const {
    constexpr int maxName = 1000;
    const QString name = index.column() == Grid::NameColumn
                             ? shortened(index.data().toString(), maxName)
                             : QString();
    QStringList lines{name, toolTip(index), columnNote(index.column())};
    lines.removeAll(QString());
    return lines.join(u'\n');
}

QString GridModel::columnNote(int col) const {
    return m_grid.columnNoteOf ? m_grid.columnNoteOf(col) : QString();
}

QStringList GridModel::notes(int row, int col) const {
    return m_grid.notesOf ? m_grid.notesOf(row, col) : QStringList();
}

QVariant GridModel::headerData(int section, Qt::Orientation orientation, int role) const {
    if (section < 0)
        return {};
    if (orientation == Qt::Vertical) {
        const int row = gridRowOf(section);
        return role == Qt::DisplayRole && row < m_grid.Rows()
                   ? m_grid.TextMatrix(row, Grid::NameColumn)
                   : QVariant();
    }
    if (section >= columnCount() || m_grid.Rows() == 0)
        return {};
    if (role == Qt::DisplayRole)
        return m_grid.TextMatrix(gridRow::Heading, section);
    if (role == Qt::ToolTipRole || role == Qt::AccessibleDescriptionRole)
        return columnNote(section);
    if (role == Qt::TextAlignmentRole) {
        const bool left = m_grid.ColAlignment(section) == leftAligned;
        return QVariant::fromValue((left ? Qt::AlignLeft : Qt::AlignRight) | Qt::AlignVCenter);
    }
    return {};
}

bool GridModel::sync() {
    const QStringList names = namesOf(m_grid);
    const int rows = static_cast<int>(names.size());
    const bool renamed = names != m_names;
    if (renamed) {
        if (rows > m_rows) {
            beginInsertRows({}, m_rows, rows - 1);
            m_rows = rows;
            endInsertRows();
        }
        moveSelection(names);
        if (rows < m_rows) {
            beginRemoveRows({}, rows, m_rows - 1);
            m_rows = rows;
            endRemoveRows();
        }
        m_names = names;
    }
    if (m_rows > 0)
        emit dataChanged(index(0, 0), index(m_rows - 1, columnCount() - 1));
    emit headerDataChanged(Qt::Horizontal, 0, columnCount() - 1);
    return renamed;
}

// Runs after the insertion and before the removal of rows, so that old and new rows are valid.
void GridModel::moveSelection(const QStringList &names) {
    emit layoutAboutToBeChanged(); // registers the selection's indexes as persistent ones
    const QModelIndexList held = persistentIndexList();
    const int newData = static_cast<int>(names.size()) - gridRow::BelowData;
    const int oldData = static_cast<int>(m_names.size()) - gridRow::BelowData;
    QHash<QString, int> rowOfName;
    for (int row = 0; row < newData; ++row)
        rowOfName.insert(names[row], row);

    const auto followed = [&](int row) {
        return row >= oldData ? row + newData - oldData : rowOfName.value(m_names.value(row), -1);
    };
    QSet<int> taken;
    for (const QModelIndex &from : held)
        taken.insert(followed(from.row()));

    QModelIndexList moved;
    for (const QModelIndex &from : held) {
        int to = followed(from.row());
        if (to < 0 && from.row() < newData && !taken.contains(from.row()))
            to = from.row();
        moved.append(to < 0 ? QModelIndex() : index(to, from.column()));
    }
    changePersistentIndexList(held, moved);
    emit layoutChanged();
}

} // namespace veltrona
