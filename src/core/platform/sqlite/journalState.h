// Whether a rollback journal and the database file beside it belong together. SQLite takes that for
// granted: it plays a crash's journal back into whatever file is there by now, and so silently
// corrupts a backup that was put back meanwhile.
#pragma once

struct sqlite3_file;

namespace veltrona::sqlite {

/// False if the journal was certainly written for another state of the database. Takes no lock and
/// reads only the database's header.
bool belongsTogether(sqlite3_file &journal, sqlite3_file &database);

} // namespace veltrona::sqlite
