// The product's pictures, compiled in: "import", "export", "print", "folder" and "veltrona".
#pragma once

#include <QIcon>

namespace veltrona {

QIcon icon(const QString &name);

} // namespace veltrona
