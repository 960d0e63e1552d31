// The standard folders of the user and the program, and paths for the system's own functions.
#pragma once

#include <QFile>
#include <QString>

#include <filesystem>
#include <limits>

namespace veltrona::desktop {

/// The folders' paths have the platform's separators and none at the end. This one, for local
/// application data, is created if it is missing; empty if that fails.
QString localDataFolder();

/// The user's documents folder; empty if there is none.
QString documentsFolder();

/// The folder of the executable and data.dat.
QString programFolder();

/// The check before a file is opened: reading a pipe or a device might never end. 0 if the path
/// leads to an ordinary file, else an error number: EISDIR, EINVAL for a pipe, a socket or a
/// device, ENAMETOOLONG if the absolute path has more than `maxBytes`, ENOENT.
int ordinaryFileError(const QString &path, qsizetype maxBytes = std::numeric_limits<int>::max());

/// A path for the C++ standard library. Never throws, whatever characters a name has.
inline std::filesystem::path nativePath(const QString &path) {
    return QFile::encodeName(path).toStdString();
}

} // namespace veltrona::desktop
