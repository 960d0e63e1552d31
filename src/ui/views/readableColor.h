// Text colours that stay readable on any base: contrast as WCAG counts it, 1 to 21.
#pragma once

#include "core/controls/grid.h"

namespace veltrona {

constexpr double readableContrast = 4.5;

double contrast(Rgb one, Rgb other);
/// `color` itself where it is readable on `base`; else the nearest mix with white or black that is.
/// A grey, black included, becomes plain white or black.
Rgb readableColor(Rgb color, Rgb base, double wanted = readableContrast);

} // namespace veltrona
