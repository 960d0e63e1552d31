// Writes a report: the HTML file, and graph.jpg beside it if the graph is wanted. Both replace
// older files once they are complete, the page first.
#pragma once

#include "core/report/report.h"

#include <QDir>
#include <QString>

namespace veltrona {

/// The trimmed name, with ".html" appended unless it ends in ".htm" or ".html" in any case.
QString reportFileName(const QString &name);

/// The fixed path of the printed report.
QString printReportPath(const QString &dataFolder, QChar separator = QDir::separator());

/// graph.jpg in the report's folder.
QString graphPath(const QString &reportFile, QChar separator = QDir::separator());

/// Trims the name; a relative one starts from the current directory. Throws Failure if the page
/// can't be written: an older page and its picture then stay unchanged. If the picture can't be
/// written, a message says so, the page is written all the same and an older picture is removed.
/// Returns the report that was written.
Report writeReport(const QString &strFilename, bool doColor, const ReportSource &source);

/// Throws Failure unless the file can be read and holds the report.
void requireWritten(const Report &report, const QString &path);

} // namespace veltrona
