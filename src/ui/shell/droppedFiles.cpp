#include "ui/shell/droppedFiles.h"

#include "core/analysis/records/readingOrder.h"

#include <QDir>
#include <QFileInfo>
#include <QMimeData>
#include <QUrl>

#include <algorithm>

namespace veltrona {

namespace {

bool isFileOfType(const QUrl &url, const QString &extension) {
    const QFileInfo file(url.toLocalFile());
    return url.isLocalFile() && file.isFile() &&
           file.suffix().compare(extension, Qt::CaseInsensitive) == 0;
}

} // namespace

DroppedFiles droppedFiles(const QMimeData &data) {
    QList<QUrl> urls = data.urls();
    DroppedFiles files;
    if (urls.size() == 1 && isFileOfType(urls.first(), QStringLiteral("vlt"))) {
        files.project = QDir::toNativeSeparators(urls.first().toLocalFile());
        return files;
    }
    if (!std::all_of(urls.begin(), urls.end(),
                     [](const QUrl &url) { return isFileOfType(url, QStringLiteral("xml")); }))
        return files;
    std::sort(urls.begin(), urls.end(), [](const QUrl &a, const QUrl &b) {
        return ReadingKey(a.fileName()) < ReadingKey(b.fileName());
    });
    for (const QUrl &url : urls)
        files.reports.append(QDir::toNativeSeparators(url.toLocalFile()));
    return files;
}

} // namespace veltrona
