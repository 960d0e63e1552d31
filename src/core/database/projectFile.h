// Project files: SQLite databases with the extension "vlt" that have the table of day records, and
// an application id and a schema version by which other files are recognised.
#pragma once

#include "core/platform/sqlite/connection.h"

#include <QDir>
#include <QString>

#include <memory>

namespace veltrona {

/// Numbers of Failures about projects: SQLite's codes of the same meaning.
enum ProjectFault : int {
    damagedProject = int(sqlite::Result::Corrupt),
    newerProject = int(sqlite::Result::Schema),
    olderProject = int(sqlite::Result::Schema),
    unreadableDate = int(sqlite::Result::Mismatch),
    noProject = int(sqlite::Result::NotADatabase),
    largeProject = int(sqlite::Result::NoMemory),
    movedProject = int(sqlite::Result::FileMoved),
};

/// The title of a project: the file name without folder and last extension.
QString projectTitle(const QString &path, QChar separator = QDir::separator());

/// Opens a project for reading and writing and verifies it: header, application id, schema version,
/// table and columns, and that it can be written now. Throws Failure with number and reason for a
/// missing, empty, foreign, newer, older, damaged, read-only or locked file.
std::unique_ptr<sqlite::Connection> openProject(const QString &path);

/// Copies the template to `target`, which is replaced once the copy is complete. Throws Failure,
/// with an older file of that name as it was.
void makeProject(const QString &templatePath, const QString &target);

/// Makes the project, and its folder, if missing. Throws Failure.
void makeMissingProject(const QString &templatePath, const QString &target);

/// Renames a project and SQLite's files beside it to "... set aside" with the time. Throws Failure,
/// with everything as it was.
void renameAside(const QString &path);
/// Whether there is a file to rename, in a folder that can be written.
bool canRenameAside(const QString &path);

/// Whether two paths lead to the same file, also by links.
bool isSameFile(const QString &first, const QString &second);

/// Removes all records and gives the space back to the disk, if possible.
void cleanProject(sqlite::Connection &connection);

} // namespace veltrona
