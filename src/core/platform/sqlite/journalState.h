// Whether a rollback journal and the database file beside it belong together. The engine takes that
// for granted: a journal that was left by a crash is played back into whatever stands there by now,
// and a backup that was put back meanwhile is spoiled without a word.
#pragma once

struct sqlite3_file;

namespace veltrona::sqlite {

/// False where the journal proves that it was made for another state of the database. Asks neither
/// for locks nor for the whole of the database; both files stay the caller's.
bool belongsTogether(sqlite3_file &journal, sqlite3_file &database);

} // namespace veltrona::sqlite
