// The check of a report before anything is stored: which columns it declares, how many rows it has,
// and whether the two columns that can't be done without come early enough.
#pragma once

#include "core/import/reportColumns.h"
#include "core/platform/xml/document.h"

namespace veltrona {

/// The bar of an import counts in 16 bits.
inline constexpr int mostReportRows = 32767;

struct ColumnCheck {
    ReportColumnNames names;
    int rowCount = 0; // as far as the walk has come
    bool passed = false;
};

/// Throws Failure for a report that draws content from entities with markup, for a `column`
/// without a name, and for more rows than an import can take.
ColumnCheck checkColumns(const xml::Document &document);

} // namespace veltrona
