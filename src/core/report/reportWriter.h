// Writes a report: the HTML file, and graph.jpg beside it if the graph is wanted. Both are put in
// place when they are complete, the page first.
#pragma once

#include "core/report/report.h"

#include <QString>

namespace veltrona {

/// Blanks around the name are cut; a relative name starts from the current directory. Throws
/// Failure where the page can't be written: an older page and its picture are as they were then. A
/// picture that can't be written is reported in a message, and the page is put in place all the
/// same, without an older picture beside it.
/// Gives the report that the page shows.
Report writeReport(const QString &strFilename, bool doColor, const ReportSource &source);

/// Throws Failure unless the file can be read and holds the report.
void requireWritten(const Report &report, const QString &path);

} // namespace veltrona
