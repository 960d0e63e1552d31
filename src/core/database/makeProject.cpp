#include "core/database/dayTable.h"
#include "core/database/projectFile.h"
#include "core/platform/desktop/nativePath.h"
#include "core/platform/desktop/ordinaryFile.h"
#include "core/platform/desktop/replacementFile.h"
#include "core/platform/services.h"

#include <QFile>
#include <QFileInfo>
#include <QtEndian>
#include <QThread>

#include <cerrno>
#include <filesystem>
#include <system_error>

#include <fcntl.h>

namespace veltrona {

namespace {

namespace fs = std::filesystem;

constexpr auto makeAction = "Can't make the project";

using desktop::nativePath;

/// Looks at the header alone: opening would need the right to write beside the program.
bool isProject(const QByteArray &bytes) {
    constexpr QByteArrayView magic("SQLite format 3\0", 16);
    constexpr int headerSize = 100;
    if (bytes.size() < headerSize || !bytes.startsWith(magic))
        return false;
    const auto number = [&bytes](int offset) {
        return qFromBigEndian<qint32>(bytes.constData() + offset);
    };
    const int pageSize = qFromBigEndian<quint16>(bytes.constData() + 16);
    return number(68) == projectApplicationId && number(60) == projectSchemaVersion &&
           qint64(number(28)) * pageSize == bytes.size();
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

/// A file of the engine beside the older file, such as the journal of a crashed program: it would
/// be played back into the new file. Comes back when this ends, unless dropped.
class SideFile {
public:
    SideFile(const QString &target, const char *suffix)
        : m_file(nativePath(target + QLatin1String(suffix))),
          m_aside(nativePath(desktop::unfinishedName(target))),
          m_hold(target + QLatin1String(suffix), O_RDONLY | O_NONBLOCK) {
        std::error_code error;
        m_moved = fs::exists(m_file, error);
        if (m_moved)
            fs::rename(m_file, m_aside, error);
        m_moved = m_moved && !error;
        // Also where the name is so long that no project of that name could have a journal.
        if (error)
            throw Failure::ofSystem(error.value(), QLatin1String(makeAction),
                                    QDir::toNativeSeparators(target));
    }
    ~SideFile() {
        std::error_code error;
        if (m_moved)
            fs::rename(m_aside, m_file, error);
    }
    void drop() {
        std::error_code error;
        if (m_moved)
            fs::remove(m_aside, error);
        m_moved = false;
    }
    SideFile(const SideFile &) = delete;
    SideFile &operator=(const SideFile &) = delete;

private:
    fs::path m_file;
    fs::path m_aside;         // a left-over, if the program is killed now
    desktop::FileLock m_hold; // and none before
    bool m_moved = false;
};

/// An older project may be there. SQLite takes no longer path.
void refuseUnlessFile(const QString &target) {
    const int error = desktop::ordinaryFileError(target, sqlite::longestPath());
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

/// Also a link that leads nowhere: its file may be on a drive that isn't there now.
bool stands(const QString &path) {
    return QFileInfo::exists(path) || QFileInfo(path).isSymLink();
}

/// Waits for other programs that hold it, but not for one that is stuck.
desktop::FileLock holdFolder(const QString &folder) {
    constexpr int tries = 300;
    desktop::FileLock hold;
    for (int i = 0; i < tries && !hold.isLocked(); ++i) {
        if (i > 0)
            QThread::msleep(10);
        hold = desktop::FileLock(folder, O_RDONLY | O_DIRECTORY);
    }
    return hold;
}

} // namespace

void makeProject(const QString &templatePath, const QString &target) {
    const QByteArray bytes = readTemplate(templatePath);
    refuseUnlessFile(target);
    desktop::ReplacementFile draft(target, QLatin1String(makeAction));
    draft.write({bytes.constData(), static_cast<std::size_t>(bytes.size())});
    SideFile journal(draft.target(), "-journal");
    SideFile writeAheadLog(draft.target(), "-wal");
    draft.commit();
    journal.drop();
    writeAheadLog.drop();
}

void makeMissingProject(const QString &templatePath, const QString &target) {
    const QString folder = QFileInfo(target).path();
    if (!QDir().mkpath(folder))
        throw Failure::ofSystem(errno, QStringLiteral("Can't make the folder"), folder);
    if (stands(target))
        return;
    // Of two first starts the second finds the project, and leaves file and journal alone.
    const desktop::FileLock alone = holdFolder(folder);
    if (!stands(target))
        makeProject(templatePath, target);
}

void setProjectAside(const QString &path) {
    const QString aside = nameAside(path);
    QStringList moved;
    // The journal of a crashed program goes along: it belongs to this file, and to no new one.
    for (const char *part : {"-journal", "-wal", ""}) {
        const QString suffix = QLatin1String(part);
        QFile file(path + suffix);
        if (!stands(file.fileName()))
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

} // namespace veltrona
