// The check before a file is opened: reading a pipe or a device might never end.
#pragma once

#include <QString>

#include <limits>

namespace veltrona::desktop {

/// 0 if the path leads to an ordinary file, else an error number: EISDIR, EINVAL for a pipe, a
/// socket or a device, ENAMETOOLONG if the absolute path has more than `maxBytes`, ENOENT.
int ordinaryFileError(const QString &path, qsizetype maxBytes = std::numeric_limits<int>::max());

} // namespace veltrona::desktop
