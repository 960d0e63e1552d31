#include "core/platform/desktop/paths.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QStandardPaths>

#include <cerrno>

namespace veltrona::desktop {

QString localDataFolder() {
    const QString folder = QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation);
    // A relative folder would move with the current directory.
    if (folder.isEmpty() || QDir::isRelativePath(folder) || !QDir().mkpath(folder))
        return {};
    return QDir::toNativeSeparators(folder);
}

QString documentsFolder() {
    const QString folder = QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
    return QFileInfo(folder).isDir() ? QDir::toNativeSeparators(folder) : QString();
}

QString programFolder() {
    return QDir::toNativeSeparators(QCoreApplication::applicationDirPath());
}

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
