// Stores the rows of a checked report in the open project, each row once.
#pragma once

#include "core/import/columnCheck.h"
#include "core/platform/sqlite/connection.h"

#include <functional>

namespace veltrona {

/// Looks for a record with the six key values of a row.
sqlite::Statement prepareDuplicateTest(const sqlite::Connection &connection);

/// Stores each row of the document whose six key values aren't in the table yet. `onRow` is called
/// first for each row; if it returns false, the import ends there in an orderly way. Rows are
/// stored in batches: before a step that `onRow` paints, the current batch is committed unless it
/// has begun less than a tenth of a second ago, in a large project less than a second. So a killed
/// program loses one batch, and another program never waits long.
///
/// Throws Failure with a text that names file, row, line, column and value, or SQLite's reason; the
/// rows before an unreadable value are committed by then. `duplicateTest` comes from
/// prepareDuplicateTest for the same connection.
void importRows(sqlite::Connection &connection, sqlite::Statement &duplicateTest,
                const xml::Document &document, const ColumnCheck &check,
                const std::function<bool()> &onRow);

} // namespace veltrona
