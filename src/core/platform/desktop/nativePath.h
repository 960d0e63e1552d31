// A path as the system's own calls take it.
#pragma once

#include <QFile>

#include <filesystem>

namespace veltrona::desktop {

/// Never throws, whatever a name holds.
inline std::filesystem::path nativePath(const QString &path) {
    return QFile::encodeName(path).toStdString();
}

} // namespace veltrona::desktop
