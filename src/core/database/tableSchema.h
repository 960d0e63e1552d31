// Whether the table of day records in a file that may be anybody's is as harmless as the one that
// the program makes. More columns and indexes are none of its business, as long as nothing runs and
// no record is refused or replaced because of them.
#pragma once

#include "core/platform/sqlite/connection.h"

namespace veltrona {

/// What is wrong, as the end of a sentence; null if nothing is. The table has to be there. From
/// here on the connection heeds no CHECK, in whatever table. Throws what the engine reports.
const char *schemaFault(sqlite::Connection &connection);

} // namespace veltrona
