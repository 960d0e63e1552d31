// Finds and starts the desktop's program for HTML files, by the freedesktop.org lists of MIME
// associations and desktop entries. No shell is used, so that file names need no quoting. The
// started program is detached.
#pragma once

#include <QString>

namespace veltrona::desktop {

/// Results above 32 are success.
enum ProgramResult : int {
    FileNotFound = 2,
    AccessDenied = 5,
    NoAssociation = 31,
    Started = 33,
};

/// Finds the program for an HTML file. On success `program` is the path of its desktop entry.
int findExecutable(const QString &file, QString &program);

/// Opens a file with a program that findExecutable has found; a relative name is made absolute.
int shellExecute(const QString &program, const QString &file);

} // namespace veltrona::desktop
