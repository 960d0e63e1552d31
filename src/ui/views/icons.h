// The pictures that are compiled in, by their names in data/icons: each in several sizes, so that
// it is sharp on any screen and no plug-in has to draw it.
#pragma once

#include <QIcon>

class QFontMetrics;

namespace veltrona {

QIcon icon(const QString &name);

/// The edge of an icon in a line of text, which grows with large fonts.
int smallIconPixels(const QFontMetrics &metrics);

} // namespace veltrona
