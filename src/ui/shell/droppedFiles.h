// What a drag brings that the window takes: report files, or one project.
#pragma once

#include <QStringList>

class QMimeData;

namespace veltrona {

struct DroppedFiles {
    QStringList reports; // in the order of their names
    QString project;

    bool isEmpty() const { return reports.isEmpty() && project.isEmpty(); }
};

/// Files by their extensions, in any case; empty if anything else is among them.
DroppedFiles droppedFiles(const QMimeData &data);

} // namespace veltrona
