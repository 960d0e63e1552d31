// Stores the rows of a checked report in the open project, each row once.
#pragma once

#include "core/import/columnCheck.h"
#include "core/platform/sqlite/connection.h"

#include <functional>

namespace veltrona {

/// The look-up that each row of an import begins with: whether the table holds a record of its six
/// key values.
sqlite::Statement prepareDuplicateTest(const sqlite::Connection &connection);

/// Walks the document and stores every row whose six key values the table doesn't hold yet.
/// `inc` is called first for each row; false from it ends the import there, in order. Rows are
/// stored in batches: where `inc` is about to paint, the batch at hand is committed unless it is
/// younger than a tenth of a second, or in a large project than a second. A program that is killed
/// loses one batch, and another program never waits long for its turn.
///
/// Throws Failure with one text that names file, row, line, column and value, or what the engine
/// said; everything read before a value that can't be read is committed by then.
/// `duplicateTest` is what prepareDuplicateTest gave for the connection.
void importRows(sqlite::Connection &connection, sqlite::Statement &duplicateTest,
                const xml::Document &document, const ColumnCheck &check,
                const std::function<bool()> &inc);

} // namespace veltrona
