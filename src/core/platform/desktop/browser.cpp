#include "core/platform/desktop/browser.h"

#include "core/platform/desktop/desktopEntry.h"

#include <QDirIterator>
#include <QFileInfo>
#include <QProcess>
#include <QStandardPaths>

namespace veltrona::desktop {

namespace {

constexpr QLatin1String listName("mimeapps.list");

/// The association lists of one folder; those of the current desktops come first.
QStringList associationLists(const QString &folder) {
    QStringList lists;
    for (const QString &desktop :
         qEnvironmentVariable("XDG_CURRENT_DESKTOP").toLower().split(u':', Qt::SkipEmptyParts))
        lists << folder + u'/' + desktop + u'-' + listName;
    return lists << folder + u'/' + listName;
}

QStringList programFolders() {
    return QStandardPaths::standardLocations(QStandardPaths::ApplicationsLocation);
}

/// A hyphen of an ID may mean a subfolder: "kde-viewer.desktop" is "kde/viewer.desktop".
QString fileOfId(const QString &folder, const QString &id) {
    if (QFileInfo(folder + u'/' + id).isFile())
        return folder + u'/' + id;
    for (qsizetype at = id.indexOf(u'-'); at > 0; at = id.indexOf(u'-', at + 1)) {
        const QString below = folder + u'/' + id.first(at);
        // Without this check each hyphen would double the places to search.
        QString found = QFileInfo(below).isDir() ? fileOfId(below, id.sliced(at + 1)) : QString();
        if (!found.isEmpty())
            return found;
    }
    return {};
}

/// The desktop entry of an ID if its program can be used. Only the first folder that has the ID
/// counts.
QString usableEntry(const QString &id) {
    for (const QString &folder : programFolders()) {
        QString file = id.contains(u'/') ? QString() : fileOfId(folder, id);
        if (!file.isEmpty())
            return DesktopEntry::read(file) ? file : QString();
    }
    return {};
}

QStringList idsOf(const QString &list, const char *group, const QString &mimeType) {
    return readKeyFileGroup(list, QLatin1String(group))
        .value(mimeType)
        .split(u';', Qt::SkipEmptyParts);
}

QString firstUsable(const QStringList &ids, const QStringList &removed) {
    for (const QString &id : ids) {
        QString file = removed.contains(id) ? QString() : usableEntry(id);
        if (!file.isEmpty())
            return file;
    }
    return {};
}

/// The IDs of the entries in a folder whose MimeType key names the type.
QStringList idsThatOpen(const QString &folder, const QString &mimeType) {
    QStringList ids;
    QDirIterator entries(folder, {QStringLiteral("*.desktop")}, QDir::Files,
                         QDirIterator::Subdirectories | QDirIterator::FollowSymlinks);
    while (entries.hasNext()) {
        const QString file = entries.next();
        const auto entry = DesktopEntry::read(file);
        if (entry && entry->opens(mimeType))
            ids << file.sliced(folder.size() + 1).replace(u'/', u'-');
    }
    ids.sort();
    return ids;
}

/// First the defaults, then added associations, then entries that name the type.
QString handlerOf(const QString &mimeType) {
    const QStringList programs = programFolders();
    QStringList lists, removed;
    for (const QString &folder :
         QStandardPaths::standardLocations(QStandardPaths::GenericConfigLocation) + programs)
        lists << associationLists(folder);
    QString file;
    for (const QString &list : lists)
        if (file.isEmpty())
            file = firstUsable(idsOf(list, "Default Applications", mimeType), {});
    for (const QString &list : lists) {
        if (file.isEmpty())
            file = firstUsable(idsOf(list, "Added Associations", mimeType), removed);
        removed << idsOf(list, "Removed Associations", mimeType);
    }
    for (const QString &folder : programs)
        if (file.isEmpty())
            file = firstUsable(idsThatOpen(folder, mimeType), removed);
    return file;
}

} // namespace

int findExecutable(const QString &file, QString &program) {
    program.clear();
    if (!QFileInfo::exists(file))
        return FileNotFound;
    program = handlerOf(QStringLiteral("text/html"));
    return program.isEmpty() ? NoAssociation : Started;
}

int shellExecute(const QString &program, const QString &file) {
    const auto entry = DesktopEntry::read(program);
    if (!entry)
        return FileNotFound;
    QStringList command = entry->command(QFileInfo(file).absoluteFilePath());
    if (command.isEmpty())
        return NoAssociation;
    QProcess process;
    process.setProgram(command.takeFirst());
    process.setArguments(command);
    process.setWorkingDirectory(entry->workingFolder());
    process.setStandardInputFile(QProcess::nullDevice());
    process.setStandardOutputFile(QProcess::nullDevice());
    process.setStandardErrorFile(QProcess::nullDevice());
    return process.startDetached() ? Started : AccessDenied;
}

} // namespace veltrona::desktop
