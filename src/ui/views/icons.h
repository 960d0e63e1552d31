// The pictures that are compiled in, by their names in data/icons: each in several sizes, so that
// it is sharp on any screen and no plug-in has to draw it.
#pragma once

#include <QIcon>

namespace veltrona {

QIcon icon(const QString &name);

} // namespace veltrona
