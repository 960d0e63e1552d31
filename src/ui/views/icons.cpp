#include "ui/views/icons.h"

#include <QDir>
#include <QFontMetrics>

// Links in the resources of a static library; the macro must be used outside namespaces.
static void initResources() {
    Q_INIT_RESOURCE(icons);
}

namespace veltrona {

int smallIconPixels(const QFontMetrics &metrics) {
    constexpr int usualLine = 18;
    return metrics.height() <= usualLine ? usualIconPixels : metrics.height();
}

QIcon icon(const QString &name) {
    initResources();
    QIcon icon;
    const QDir sizes(":/icons/" + name);
    for (const QString &picture : sizes.entryList())
        icon.addFile(sizes.filePath(picture));
    return icon;
}

} // namespace veltrona
