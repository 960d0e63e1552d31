#include "ui/views/icons.h"

#include <QDir>

// A static library's resources are linked in by this call, which has to stand in no namespace.
static void initResources() {
    Q_INIT_RESOURCE(icons);
}

namespace veltrona {

QIcon icon(const QString &name) {
    initResources();
    QIcon icon;
    const QDir sizes(QStringLiteral(":/icons/") + name);
    for (const QString &picture : sizes.entryList())
        icon.addFile(sizes.filePath(picture));
    return icon;
}

} // namespace veltrona
