#include "core/platform/desktop/browser.h"

#include "core/base/text.h"

#include <QDirIterator>
#include <QFileInfo>
#include <QMap>
#include <QProcess>
#include <QStandardPaths>
#include <QUrl>

#include <optional>

namespace veltrona::desktop {

namespace {

/// Resolves the escape sequences of a key file's values.
QString unescaped(const QString &raw) {
    QString text;
    for (qsizetype i = 0; i < raw.size(); ++i) {
        if (raw[i] != u'\\' || i + 1 == raw.size()) {
            text += raw[i];
            continue;
        }
        constexpr QStringView codes = u"sntr\\", characters = u" \n\t\r\\";
        const qsizetype code = codes.indexOf(raw[++i]);
        if (code >= 0)
            text += characters[code];
        else // part of the quoting of Exec
            (text += u'\\') += raw[i];
    }
    return text;
}

/// Splits a command line at blanks outside double quotes; in quotes a backslash escapes the next
/// character. Empty if a quote isn't closed.
QStringList arguments(const QString &line) {
    QStringList found;
    QString current;
    bool isQuoted = false, hasBegun = false;
    for (qsizetype i = 0; i < line.size(); ++i) {
        const QChar each = line[i];
        if (isQuoted && each == u'\\' && i + 1 < line.size()) {
            current += line[++i];
        } else if (each == u'"') {
            isQuoted = !isQuoted;
            hasBegun = true;
        } else if (each == u' ' && !isQuoted) {
            if (hasBegun)
                found.append(std::exchange(current, QString()));
            hasBegun = false;
        } else {
            current += each;
            hasBegun = true;
        }
    }
    if (hasBegun)
        found.append(current);
    return isQuoted ? QStringList() : found;
}

QString terminal() {
    return QStandardPaths::findExecutable(u"x-terminal-emulator"_s);
}

/// The keys of one group of a key file, with their raw values.
QMap<QString, QString> readKeyFileGroup(const QString &file, const QString &group) {
    QMap<QString, QString> keys;
    QFile in(file);
    if (!in.open(QIODevice::ReadOnly))
        return keys;
    const QString heading = u'[' + group + u']';
    bool isInGroup = false;
    while (!in.atEnd()) {
        const QString line = QString::fromUtf8(in.readLine()).trimmed();
        if (line.startsWith(u'[')) {
            isInGroup = line == heading;
        } else if (const qsizetype equals = line.indexOf(u'=');
                   isInGroup && equals > 0 && !line.startsWith(u'#')) {
            keys.insert(line.first(equals).trimmed(), line.sliced(equals + 1).trimmed());
        }
    }
    return keys;
}

/// A program's desktop entry: a file NAME.desktop with a group [Desktop Entry].
class DesktopEntry {
public:
    /// None unless the program is installed and not hidden.
    static std::optional<DesktopEntry> read(const QString &file);

    bool opens(const QString &mimeType) const {
        return value("MimeType").split(u';', Qt::SkipEmptyParts).contains(mimeType);
    }
    QString workingFolder() const { return value("Path"); }
    /// Program and arguments to open a file, given by its absolute path; empty if the Exec key is
    /// malformed.
    QStringList command(const QString &path) const;

private:
    QString value(const char *key) const { return unescaped(m_keys.value(QLatin1String(key))); }

    QString m_file;
    QMap<QString, QString> m_keys;
};

std::optional<DesktopEntry> DesktopEntry::read(const QString &file) {
    DesktopEntry entry;
    entry.m_file = file;
    entry.m_keys = readKeyFileGroup(file, u"Desktop Entry"_s);
    const QString tryExec = entry.value("TryExec");
    const bool isUsable =
        entry.value("Type") == "Application"_L1 && entry.value("Hidden") != "true"_L1 &&
        !entry.value("Exec").isEmpty() &&
        (tryExec.isEmpty() || !QStandardPaths::findExecutable(tryExec).isEmpty()) &&
        (entry.value("Terminal") != "true"_L1 || !terminal().isEmpty());
    return isUsable ? std::optional(entry) : std::nullopt;
}

QStringList DesktopEntry::command(const QString &path) const {
    const QMap<QChar, QString> expansions = {
        {u'f', path},          {u'u', QString::fromLatin1(QUrl::fromLocalFile(path).toEncoded())},
        {u'c', value("Name")}, {u'k', m_file},
        {u'%', u"%"_s},
    };
    QStringList command;
    bool hasFile = false;
    for (const QString &argument : arguments(value("Exec"))) {
        if (argument == "%i"_L1) {
            if (!value("Icon").isEmpty())
                command << u"--icon"_s << value("Icon");
            continue;
        }
        QString expanded;
        for (qsizetype i = 0; i < argument.size(); ++i) {
            if (argument[i] != u'%' || i + 1 == argument.size()) {
                expanded += argument[i];
                continue;
            }
            const QChar code = argument[++i].toLower();
            hasFile = hasFile || code == u'f' || code == u'u';
            expanded += expansions.value(code); // empty for deprecated codes
        }
        if (!expanded.isEmpty() || argument.isEmpty())
            command << expanded;
    }
    if (!command.isEmpty() && !hasFile)
        command << path;
    if (!command.isEmpty() && value("Terminal") == "true"_L1)
        command = QStringList{terminal(), u"-e"_s} + command;
    return command;
}

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
    QDirIterator entries(folder, {u"*.desktop"_s}, QDir::Files,
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
    program = handlerOf(u"text/html"_s);
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
