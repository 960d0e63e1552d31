// The compiled-in icons, by their names in data/icons. Each has several sizes, so that it is sharp
// on any screen without an SVG plug-in.
#pragma once

#include <QIcon>

class QFontMetrics;

namespace veltrona {

QIcon icon(const QString &name);

inline constexpr int usualIconPixels = 16;

/// Edge length of an icon in a line of text, from the usual one on; grows with large fonts.
int smallIconPixels(const QFontMetrics &metrics);

} // namespace veltrona
