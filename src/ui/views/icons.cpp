#include "ui/views/icons.h"

// A static library's resources are linked in by this call, which has to stand in no namespace.
static void initResources() {
    Q_INIT_RESOURCE(icons);
}

namespace veltrona {

QIcon icon(const QString &name) {
    initResources();
    return QIcon(QStringLiteral(":/icons/%1.svg").arg(name));
}

} // namespace veltrona
