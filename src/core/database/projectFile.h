// Project files: SQLite databases with the extension "vlt" that hold the table of day records and
// carry an application id and a schema version, so that a foreign or newer file is known before
// anything relies on it.
#pragma once

#include "core/base/failureNumbers.h"
#include "core/platform/sqlite/connection.h"

#include <QDir>

#include <memory>

namespace veltrona {

/// The title of a project: the file name without folder and last extension.
QString projectTitle(const QString &path, QChar separator = QDir::separator());

/// Opens a project for reading and writing and proves that it is one: header, application id,
/// schema version, table and columns, and that it can be written now. Throws Failure with number
/// and reason for a missing, empty, foreign, newer, damaged, read-only or locked file.
std::unique_ptr<sqlite::Connection> openProject(const QString &path);

/// Copies the template to `target`: beside the target first, put in place when complete, so that a
/// failure leaves an older file of that name as it was. Throws Failure; a missing template is
/// named.
void makeProject(const QString &templatePath, const QString &target);

/// Makes the folder of `target` and the project, so far as they are missing. Throws Failure.
void makeMissingProject(const QString &templatePath, const QString &target);

/// Gives a project, and the files that the engine has left beside it, a name that says so and when.
/// Throws Failure, with everything as it was.
void setProjectAside(const QString &path);

/// Whether two paths lead to the same file, by whatever links.
bool isSameFile(const QString &first, const QString &second);

/// Removes all records and gives the space back to the disk; a failure to give it back is none.
void cleanProject(sqlite::Connection &connection);

} // namespace veltrona
