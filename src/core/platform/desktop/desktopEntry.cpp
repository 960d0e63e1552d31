#include "core/platform/desktop/desktopEntry.h"

#include <QFile>
#include <QStandardPaths>
#include <QUrl>

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
    return QStandardPaths::findExecutable(QStringLiteral("x-terminal-emulator"));
}

} // namespace

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

std::optional<DesktopEntry> DesktopEntry::read(const QString &file) {
    DesktopEntry entry;
    entry.m_file = file;
    entry.m_keys = readKeyFileGroup(file, QStringLiteral("Desktop Entry"));
    const QString tryExec = entry.value("TryExec");
    const bool isUsable =
        entry.value("Type") == QLatin1String("Application") &&
        entry.value("Hidden") != QLatin1String("true") && !entry.value("Exec").isEmpty() &&
        (tryExec.isEmpty() || !QStandardPaths::findExecutable(tryExec).isEmpty()) &&
        (entry.value("Terminal") != QLatin1String("true") || !terminal().isEmpty());
    return isUsable ? std::optional(entry) : std::nullopt;
}

QString DesktopEntry::value(const char *key) const {
    return unescaped(m_keys.value(QLatin1String(key)));
}

bool DesktopEntry::opens(const QString &mimeType) const {
    return value("MimeType").split(u';', Qt::SkipEmptyParts).contains(mimeType);
}

QStringList DesktopEntry::command(const QString &path) const {
    const QMap<QChar, QString> expansions = {
        {u'f', path},
        {u'u', QString::fromLatin1(QUrl::fromLocalFile(path).toEncoded())},
        {u'c', value("Name")},
        {u'k', m_file},
        {u'%', QStringLiteral("%")},
    };
    QStringList command;
    bool hasFile = false;
    for (const QString &argument : arguments(value("Exec"))) {
        if (argument == QLatin1String("%i")) {
            if (!value("Icon").isEmpty())
                command << QStringLiteral("--icon") << value("Icon");
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
    if (!command.isEmpty() && value("Terminal") == QLatin1String("true"))
        command = QStringList{terminal(), QStringLiteral("-e")} + command;
    return command;
}

} // namespace veltrona::desktop
