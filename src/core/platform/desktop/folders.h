// The standard folders of the user and the program. All paths have the platform's separators and
// none at the end.
#pragma once

#include <QString>

namespace veltrona::desktop {

/// The user's folder for local application data, created if it is missing; empty if that fails.
QString localDataFolder();

/// The user's documents folder; empty if there is none.
QString documentsFolder();

/// The folder of the executable and data.dat.
QString programFolder();

} // namespace veltrona::desktop
