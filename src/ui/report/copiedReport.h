// A selection of a report for the clipboard, as text, HTML and ODF.
#pragma once

#include "core/report/report.h"

class QMimeData;

namespace veltrona {

/// The text between two positions of the report's document, rendered when it is pasted, which may
/// be after the preview has closed. The statistics become a table.
QMimeData *copiedReport(Report report, int anchor, int position);

} // namespace veltrona
