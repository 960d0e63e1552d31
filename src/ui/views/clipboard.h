// The system's clipboard for bitmaps.
#pragma once

#include "core/picture/drawing.h"

namespace veltrona::drawing {

/// Copies the bitmap to the system's clipboard and destroys it; always true.
bool toSystemClipboard(Handle bitmap);

} // namespace veltrona::drawing
