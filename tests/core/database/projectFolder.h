// A temporary folder with projects in it, for the tests of project files.
#pragma once

#include "database/projectFile.h"

#include <QCoreApplication>
#include <QFile>
#include <QTemporaryDir>

#include <optional>

namespace veltrona {

inline QByteArray contents(const QString &path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("(none)");
}

inline void write(const QString &path, const QByteArray &bytes) {
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
        qFatal("can't write %s", qPrintable(path));
}

class ProjectFolder {
protected:
    void renewFolder() { m_folder.emplace(); }

    QString folder() const { return m_folder->path(); }
    QString path(const QString &name) const { return folder() + QLatin1Char('/') + name; }

    /// Beside the test program, like the program's own.
    static QString templatePath() {
        return QCoreApplication::applicationDirPath() + QStringLiteral("/data.dat");
    }

    QString project(const QString &name = QStringLiteral("p.vlt")) const {
        makeProject(templatePath(), path(name));
        return path(name);
    }

    QStringList files() const {
        return QDir(folder()).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot);
    }

private:
    std::optional<QTemporaryDir> m_folder;
};

} // namespace veltrona
