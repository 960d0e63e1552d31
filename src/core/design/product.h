// The program's name, typed here and nowhere else in the sources, and its version, whose one source
// is the project line of the build.
#pragma once

#include <QString>

namespace veltrona {

inline constexpr QLatin1String productName{"Veltrona"};

QString programVersion();

} // namespace veltrona
