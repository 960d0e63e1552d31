#include "core/database/projectFile.h"

#include "core/database/dayTable.h"
#include "core/platform/desktop/fileLocks.h"
#include "core/platform/desktop/nativePath.h"
#include "core/platform/desktop/ordinaryFile.h"
#include "core/platform/desktop/replacementFile.h"
#include "core/platform/services.h"
#include "core/platform/sqlite/fileHeader.h"

#include <QFile>
#include <QFileInfo>

#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <system_error>

namespace veltrona {

namespace {

namespace fs = std::filesystem;

constexpr auto makeAction = "Can't make the project";

using desktop::nativePath;

/// Reads the header only: opening would need write access to the program's folder.
bool isProject(const QByteArray &bytes) {
    sqlite::FileHeader header;
    if (bytes.size() < qsizetype(header.size))
        return false;
    std::copy_n(bytes.begin(), header.size, header.bytes.begin());
    return header.isDatabase() && header.applicationId() == projectApplicationId &&
           header.userVersion() == projectSchemaVersion &&
           qint64(header.pageCount()) * header.pageSize() == bytes.size();
}

QByteArray readTemplate(const QString &path) {
    const QString action = QStringLiteral("The template for new projects can't be read, file");
    const QString native = QDir::toNativeSeparators(path);
    QFile file(path);
    errno = 0;
    const QByteArray bytes = file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    if (file.error() != QFileDevice::NoError && errno != 0)
        throw Failure::ofSystem(errno, action, native);
    if (file.error() != QFileDevice::NoError)
        throw Failure(EIO, action + QStringLiteral(" \"%1\": %2.").arg(native, file.errorString()));
    if (!isProject(bytes))
        throw Failure(
            damagedProject,
            QStringLiteral("The template for new projects, file \"%1\", is damaged.").arg(native));
    return bytes;
}

/// A file of SQLite's beside the older file, such as the journal of a crashed program: it would be
/// played back into the new file. Restored by the destructor, unless removed before.
class SideFile {
public:
    SideFile(const QString &target, const char *suffix)
        : m_file(nativePath(target + QLatin1String(suffix))),
          m_aside(nativePath(desktop::unfinishedName(target))),
          m_lock(desktop::lockFile(target + QLatin1String(suffix))) {
        std::error_code error;
        m_moved = fs::exists(m_file, error);
        if (m_moved)
            fs::rename(m_file, m_aside, error);
        m_moved = m_moved && !error;
        // Also if the name is too long for a journal's.
        if (error)
            throw Failure::ofSystem(error.value(), QLatin1String(makeAction),
                                    QDir::toNativeSeparators(target));
    }
    ~SideFile() {
        std::error_code error;
        if (m_moved)
            fs::rename(m_aside, m_file, error);
    }
    void remove() {
        std::error_code error;
        if (m_moved)
            fs::remove(m_aside, error);
        m_moved = false;
    }
    Q_DISABLE_COPY_MOVE(SideFile)

private:
    fs::path m_file;
    fs::path m_aside;         // removed as a left-over if the program is killed now
    desktop::FileLock m_lock; // and not before
    bool m_moved = false;
};

/// An older project may be there. SQLite takes no longer path.
void refuseUnlessFile(const QString &target) {
    const int error = desktop::ordinaryFileError(target, sqlite::maxPathBytes());
    if (error != 0 && error != ENOENT)
        throw Failure::ofSystem(error, QLatin1String(makeAction), QDir::toNativeSeparators(target));
}

/// "Garden set aside 2007-05-14 130509.vlt", with a number where that name is taken.
QString nameAside(const QString &path) {
    const qsizetype dot = path.lastIndexOf(QLatin1Char('.'));
    const QString name = path.left(dot) + services().now().toString(
                                              QStringLiteral("' set aside 'yyyy-MM-dd hhmmss"));
    QString aside = name + path.mid(dot);
    for (int copy = 2; QFileInfo::exists(aside); ++copy)
        aside = name + QStringLiteral(" %1").arg(copy) + path.mid(dot);
    return aside;
}

/// Also for a broken link: its file may be on a drive that isn't mounted.
bool exists(const QString &path) {
    return QFileInfo::exists(path) || QFileInfo(path).isSymLink();
}

} // namespace

QString projectTitle(const QString &path, QChar separator) {
    const QString name = path.mid(path.lastIndexOf(separator) + 1);
    return name.left(name.lastIndexOf(QLatin1Char('.')));
}

void makeProject(const QString &templatePath, const QString &target) {
    const QByteArray bytes = readTemplate(templatePath);
    refuseUnlessFile(target);
    desktop::ReplacementFile draft(target, QLatin1String(makeAction));
    draft.write({bytes.constData(), static_cast<std::size_t>(bytes.size())});
    SideFile journal(draft.target(), "-journal");
    SideFile writeAheadLog(draft.target(), "-wal");
    draft.commit();
    journal.remove();
    writeAheadLog.remove();
}

void makeMissingProject(const QString &templatePath, const QString &target) {
    const QString folder = QFileInfo(target).path();
    if (!QDir().mkpath(folder))
        throw Failure::ofSystem(errno, QStringLiteral("Can't make the folder"), folder);
    if (exists(target))
        return;
    // The second of two first starts then finds the project and leaves it and its journal alone.
    const desktop::FileLock lock = desktop::lockFolder(folder);
    if (!exists(target))
        makeProject(templatePath, target);
}

void renameAside(const QString &path) {
    const QString aside = nameAside(path);
    QStringList moved;
    // The journal of a crashed program belongs to this file, not to the next one of that name.
    for (const char *part : {"-journal", "-wal", ""}) {
        const QString suffix = QLatin1String(part);
        QFile file(path + suffix);
        if (!exists(file.fileName()))
            continue;
        if (!file.rename(aside + suffix)) {
            for (const QString &back : moved)
                QFile::rename(aside + back, path + back);
            throw Failure(EIO, QStringLiteral("The file \"%1\" can't be set aside: %2.")
                                   .arg(path + suffix, file.errorString()));
        }
        moved << suffix;
    }
    if (moved.isEmpty())
        throw Failure(ENOENT, QStringLiteral("There is no file \"%1\" that could be set aside.")
                                  .arg(QDir::toNativeSeparators(path)));
}

bool isSameFile(const QString &first, const QString &second) {
    std::error_code error;
    return fs::equivalent(nativePath(first), nativePath(second), error);
}

void cleanProject(sqlite::Connection &connection) {
    sqlite::Transaction transaction(connection);
    connection.execute("DELETE FROM tblGoogleDays");
    transaction.commit();
    try {
        connection.execute("VACUUM");
    } catch (const Failure &) {
        // The records are gone; a later VACUUM can give the space back.
    }
}

} // namespace veltrona
