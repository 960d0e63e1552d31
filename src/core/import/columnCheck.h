// Checks a report before anything is stored: which columns it declares, how many rows it has, and
// whether the two required columns come early enough.
#pragma once

#include "core/import/reportColumns.h"
#include "core/platform/xml/document.h"

namespace veltrona {

/// The numbers of Failures about reports.
enum ReportFault : int { tooManyRows = 6, unreadableReport = 13 };

/// The progress bar of an import counts in 16 bits.
inline constexpr int maxReportRows = 32767;

/// The message for a report that couldn't be loaded.
QString parserReport(const xml::ParseError &error);

struct ColumnCheck {
    ReportColumnNames names;
    int rowCount = 0; // up to where the check has stopped
    bool passed = false;
};

/// Throws Failure for a report with markup in entities, for a `column` without a name, and for more
/// than maxReportRows.
ColumnCheck checkColumns(const xml::Document &document);

} // namespace veltrona
