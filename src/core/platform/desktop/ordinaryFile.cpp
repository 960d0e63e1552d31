#include "core/platform/desktop/ordinaryFile.h"

#include <QFile>
#include <QFileInfo>

#include <cerrno>

namespace veltrona::desktop {

int ordinaryFileError(const QString &path, qsizetype maxBytes) {
    const QFileInfo info(path);
    if (info.isDir())
        return EISDIR;
    if (info.exists() && !info.isFile())
        return EINVAL;
    if (QFile::encodeName(info.absoluteFilePath()).size() > maxBytes)
        return ENAMETOOLONG;
    return info.exists() ? 0 : ENOENT;
}

} // namespace veltrona::desktop
