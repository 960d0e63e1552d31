// Locks that keep the program's own processes apart.
#pragma once

#include "core/platform/desktop/replacementFile.h"

#include <QString>

namespace veltrona::desktop {

/// Waits three seconds at most for the process that has locked the folder; the lock isn't held
/// then.
FileLock lockFolder(const QString &folder);

} // namespace veltrona::desktop
