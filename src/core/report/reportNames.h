// The names of report files.
#pragma once

#include <QDir>
#include <QString>

namespace veltrona {

/// The trimmed name, with ".html" appended unless it ends in ".htm" or ".html" in any case.
QString reportFileName(const QString &name);

/// The fixed path of the printed report.
QString printReportPath(const QString &dataFolder, QChar separator = QDir::separator());

/// graph.jpg in the report's folder.
QString graphPath(const QString &reportFile, QChar separator = QDir::separator());

} // namespace veltrona
