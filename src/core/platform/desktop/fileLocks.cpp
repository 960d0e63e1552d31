#include "core/platform/desktop/fileLocks.h"

#include <QThread>

#include <fcntl.h>

namespace veltrona::desktop {

FileLock lockFolder(const QString &folder) {
    constexpr int tries = 300;
    FileLock lock;
    for (int i = 0; i < tries && !lock.isLocked(); ++i) {
        if (i > 0)
            QThread::msleep(10);
        lock = FileLock(folder, O_RDONLY | O_DIRECTORY);
    }
    return lock;
}

} // namespace veltrona::desktop
