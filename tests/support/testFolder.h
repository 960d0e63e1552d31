// A temporary folder of a test and the files in it.
#pragma once

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <optional>

namespace veltrona::test {

inline QByteArray contents(const QString &path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("(none)");
}

/// Makes the folders on the way, and gives the path.
inline QString write(const QString &path, const QByteArray &bytes) {
    QFile file(path);
    QDir().mkpath(QFileInfo(path).path());
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
        qFatal("can't write %s", qPrintable(path));
    return path;
}

/// The permissions as three digits that one knows from chmod, for owner, group and others.
inline void allow(const QString &path, int ownersGroupsOthers) {
    const int owner = ownersGroupsOthers >> 6 & 7;
    QFile::setPermissions(path, QFile::Permissions(owner << 12 | owner << 8 |
                                                   (ownersGroupsOthers >> 3 & 7) << 4 |
                                                   (ownersGroupsOthers & 7)));
}

/// Makes a program that records its folder and its arguments, one on a line, in "record" beside it.
inline void installRecorder(const QString &program) {
    const QString record = QFileInfo(program).path() + "/record";
    write(program, QString("#!/bin/sh\n(pwd; printf '%s\\n' \"$@\") > '%1.new'\nmv '%1.new' '%1'\n")
                       .arg(record)
                       .toUtf8());
    allow(program, 0700);
}

class TestFolder {
protected:
    void renewFolder() { m_folder.emplace(); }

    QString folder() const { return m_folder->path(); }
    QString path(const QString &name) const { return folder() + u'/' + name; }
    QStringList files() const {
        return QDir(folder()).entryList(QDir::AllEntries | QDir::Hidden | QDir::System |
                                        QDir::NoDotAndDotDot);
    }

private:
    std::optional<QTemporaryDir> m_folder = std::make_optional<QTemporaryDir>();
};

} // namespace veltrona::test
