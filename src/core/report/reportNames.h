// The names of report files.
#pragma once

#include <QDir>
#include <QString>

namespace veltrona {

/// The name without blanks around it, with ".html" behind it unless it ends in ".htm" or ".html" in
/// any case.
QString reportFileName(const QString &name);

/// The one place of the report that is printed.
QString printReportPath(const QString &dataFolder, QChar separator = QDir::separator());

/// graph.jpg in the folder of a report.
QString graphPath(const QString &reportFile, QChar separator = QDir::separator());

} // namespace veltrona
