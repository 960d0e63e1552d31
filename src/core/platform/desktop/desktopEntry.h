// A program's desktop entry: a file NAME.desktop with a group [Desktop Entry].
#pragma once

#include <QMap>
#include <QString>
#include <QStringList>

#include <optional>

namespace veltrona::desktop {

/// The keys of one group of a key file, with their raw values.
QMap<QString, QString> readKeyFileGroup(const QString &file, const QString &group);

class DesktopEntry {
public:
    /// None unless the program is installed and not hidden.
    static std::optional<DesktopEntry> read(const QString &file);

    bool opens(const QString &mimeType) const;
    QString workingFolder() const { return value("Path"); }
    /// Program and arguments to open a file, given by its absolute path; empty if the Exec key is
    /// malformed.
    QStringList command(const QString &path) const;

private:
    QString value(const char *key) const;

    QString m_file;
    QMap<QString, QString> m_keys;
};

} // namespace veltrona::desktop
