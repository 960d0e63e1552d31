// The program's name, typed here and nowhere else in the sources.
#pragma once

#include <QLatin1String>

namespace veltrona {

inline constexpr QLatin1String productName{"Veltrona"};

} // namespace veltrona
