// The desktop's description of a program: a file NAME.desktop with a group [Desktop Entry].
#pragma once

#include <QMap>
#include <QString>
#include <QStringList>

#include <optional>

namespace veltrona::desktop {

/// The keys of one group of a file in the desktop's key file format, values as they stand there.
QMap<QString, QString> readKeyFileGroup(const QString &file, const QString &group);

class DesktopEntry {
public:
    /// None unless the file describes a program that is installed and not hidden.
    static std::optional<DesktopEntry> read(const QString &file);

    bool opens(const QString &mimeType) const;
    QString workingFolder() const { return value("Path"); }
    /// Program and arguments that open a file, given by its absolute path; empty if the entry's
    /// command line can't be read.
    QStringList command(const QString &path) const;

private:
    QString value(const char *key) const;

    QString m_file;
    QMap<QString, QString> m_keys;
};

} // namespace veltrona::desktop
