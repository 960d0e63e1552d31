// The folders that the desktop names for the program. All paths are in the platform's own notation
// and end without a separator.
#pragma once

#include <QString>

namespace veltrona::desktop {

/// The user's local application data folder, made if it is missing; the empty text if that fails.
QString localDataFolder();

/// The user's documents folder; the empty text if there is none.
QString documentsFolder();

/// Where the program itself and data.dat lie.
QString programFolder();

} // namespace veltrona::desktop
