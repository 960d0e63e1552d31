// The result codes of SQLite that the program tells apart.
#pragma once

#include "core/base/failure.h"

namespace veltrona::sqlite {

/// The values are SQLite's.
enum class Result {
    Ok = 0,
    Error = 1, // the statement doesn't compile: bad SQL, or another schema
    Abort = 4,
    Busy = 5,
    Corrupt = 11,
    Schema = 17,
    Constraint = 19,
    Mismatch = 20,
    NotADatabase = 26,
    Row = 100,
    Done = 101,
    FileMoved = 1032, // the one extended code here
};

/// The kind of failure that an extended result code refines.
constexpr Result primary(int code) {
    return static_cast<Result>(code & 0xff);
}

/// Whether another program holds the database.
inline bool isLocked(const Failure &failure) {
    return primary(failure.number()) == Result::Busy;
}

} // namespace veltrona::sqlite
