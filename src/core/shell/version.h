// The program's version; its one source is the project line of the build.
#pragma once

#include <QString>

namespace veltrona {

QString programVersion();

} // namespace veltrona
