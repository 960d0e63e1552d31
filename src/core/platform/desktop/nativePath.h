// A path for the C++ standard library.
#pragma once

#include <QFile>

#include <filesystem>

namespace veltrona::desktop {

/// Never throws, whatever characters a name has.
inline std::filesystem::path nativePath(const QString &path) {
    return QFile::encodeName(path).toStdString();
}

} // namespace veltrona::desktop
