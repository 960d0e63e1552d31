#include "core/platform/desktop/folders.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QStandardPaths>

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

} // namespace veltrona::desktop
