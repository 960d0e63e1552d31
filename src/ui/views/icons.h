// The pictures that are compiled in, by their names in data/icons.
#pragma once

#include <QIcon>

namespace veltrona {

QIcon icon(const QString &name);

} // namespace veltrona
