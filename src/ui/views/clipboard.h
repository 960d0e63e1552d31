// The system's clipboard for bitmaps.
#pragma once

#include "core/picture/drawing.h"

namespace veltrona::drawing {

/// Puts the bitmap onto the system's clipboard and takes ownership of it; gives true.
bool toSystemClipboard(Handle bitmap);

} // namespace veltrona::drawing
