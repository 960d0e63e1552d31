// The system's clipboard as the taker of bitmaps.
#pragma once

namespace veltrona::drawing {

/// Installs it; once, when the application object is there.
void useSystemClipboard();

} // namespace veltrona::drawing
