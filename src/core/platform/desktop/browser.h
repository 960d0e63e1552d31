// Finds the program that the desktop has set for HTML files and starts it, by the desktop's own
// files: the lists of MIME associations and the programs' desktop entries. No shell takes part, so
// a file name arrives as it is, whatever characters it holds. The started program is left alone.
#pragma once

#include <QString>

namespace veltrona::desktop {

/// Results above 32 are a success; the failures are these.
enum ProgramResult : int {
    FileNotFound = 2,
    AccessDenied = 5,
    NoAssociation = 31,
    Started = 33,
};

/// Looks up the program for an HTML file. On success `program` is the path of its desktop entry.
int findExecutable(const QString &file, QString &program);

/// Starts a program that findExecutable gave on a file; a relative name becomes an absolute one.
int shellExecute(const QString &program, const QString &file);

} // namespace veltrona::desktop
