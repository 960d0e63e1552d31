// A report's file as it was written, read again: the writer's markup, and the values in it as the
// plain texts that they were. The object owns a copy of the file's bytes.
#pragma once

#include "core/report/reportPlaces.h"

#include <QByteArray>
#include <QString>

#include <functional>

namespace veltrona {

class ReportFile {
public:
    /// Throws Failure where the file can't be read or isn't the one that the places belong to.
    ReportFile(const QString &path, ReportPlaces places);

    int rows() const { return static_cast<int>(m_places.rows.size()); }
    int columns() const { return static_cast<int>(m_places.columns); }
    QString cell(int row, int col) const;
    /// Whether the writer has coloured the cell.
    bool isMarked(int row, int col) const;

    /// The report as HTML in which no value counts as markup, of the statistics only some rows, by
    /// their numbers. `shown` says in which form a value is shown.
    QString html(const std::vector<int> &rows,
                 const std::function<QString(const QString &)> &shown) const;

private:
    const BytePlace &cellPlace(int row, int col) const;
    QByteArrayView bytes(BytePlace place) const;
    QString text(BytePlace value) const;

    QByteArray m_bytes;
    ReportPlaces m_places;
};

} // namespace veltrona
