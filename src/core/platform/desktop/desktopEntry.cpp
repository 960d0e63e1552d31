#include "core/platform/desktop/desktopEntry.h"

#include <QFile>
#include <QStandardPaths>
#include <QUrl>

namespace veltrona::desktop {

namespace {

/// Undoes the escapes that every text value of a key file may hold.
QString unescaped(const QString &raw) {
    QString text;
    for (qsizetype i = 0; i < raw.size(); ++i) {
        if (raw[i] != u'\\' || i + 1 == raw.size()) {
            text += raw[i];
            continue;
        }
        switch (raw[++i].unicode()) {
        case 's':
            text += u' ';
            break;
        case 'n':
            text += u'\n';
            break;
        case 't':
            text += u'\t';
            break;
        case 'r':
            text += u'\r';
            break;
        case '\\':
            text += u'\\';
            break;
        default: // belongs to the quoting of a command line
            text += u'\\';
            text += raw[i];
        }
    }
    return text;
}

/// Cuts a command line into its arguments: at blanks outside double quotes, in which a backslash
/// takes the next character as it is. Empty if a quote isn't closed.
QStringList arguments(const QString &line) {
    QStringList found;
    QString current;
    bool quoted = false, begun = false;
    for (qsizetype i = 0; i < line.size(); ++i) {
        const QChar each = line[i];
        if (quoted && each == u'\\' && i + 1 < line.size()) {
            current += line[++i];
        } else if (each == u'"') {
            quoted = !quoted;
            begun = true;
        } else if (each == u' ' && !quoted) {
            if (begun)
                found.append(std::exchange(current, QString()));
            begun = false;
        } else {
            current += each;
            begun = true;
        }
    }
    if (begun)
        found.append(current);
    return quoted ? QStringList() : found;
}

QString inTerminal() {
    return QStandardPaths::findExecutable(QStringLiteral("x-terminal-emulator"));
}

} // namespace

QMap<QString, QString> readKeyFileGroup(const QString &file, const QString &group) {
    QMap<QString, QString> keys;
    QFile in(file);
    if (!in.open(QIODevice::ReadOnly))
        return keys;
    const QString heading = u'[' + group + u']';
    bool inside = false;
    while (!in.atEnd()) {
        const QString line = QString::fromUtf8(in.readLine()).trimmed();
        if (line.startsWith(u'[')) {
            inside = line == heading;
        } else if (const qsizetype equals = line.indexOf(u'=');
                   inside && equals > 0 && !line.startsWith(u'#')) {
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
    const bool usable =
        entry.value("Type") == QLatin1String("Application") &&
        entry.value("Hidden") != QLatin1String("true") && !entry.value("Exec").isEmpty() &&
        (tryExec.isEmpty() || !QStandardPaths::findExecutable(tryExec).isEmpty()) &&
        (entry.value("Terminal") != QLatin1String("true") || !inTerminal().isEmpty());
    return usable ? std::optional(entry) : std::nullopt;
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
            expanded += expansions.value(code); // nothing for codes that are out of use
        }
        if (!expanded.isEmpty() || argument.isEmpty())
            command << expanded;
    }
    if (!command.isEmpty() && !hasFile)
        command << path;
    if (!command.isEmpty() && value("Terminal") == QLatin1String("true"))
        command = QStringList{inTerminal(), QStringLiteral("-e")} + command;
    return command;
}

} // namespace veltrona::desktop
