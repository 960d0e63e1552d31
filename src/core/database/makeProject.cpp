#include "core/database/dayTable.h"
#include "core/database/projectFile.h"

#include <QFile>
#include <QFileInfo>
#include <QtEndian>
#include <QUuid>

#include <cerrno>
#include <filesystem>
#include <system_error>
#ifdef Q_OS_WIN
#include <io.h>
#else
#include <fcntl.h>
#include <unistd.h>
#endif

namespace veltrona {

namespace {

namespace fs = std::filesystem;

constexpr auto makeAction = "Can't make the project";

/// Never throws, whatever a name holds.
fs::path systemPath(const QString &path) {
    const QByteArray utf8 = path.toUtf8();
    return {reinterpret_cast<const char8_t *>(utf8.cbegin()),
            reinterpret_cast<const char8_t *>(utf8.cend())};
}

[[noreturn]] void fail(const QFile &file, const char *action, const QString &path) {
    const int number = errno;
    const QString native = QDir::toNativeSeparators(path);
    if (number != 0)
        throw Failure::ofSystem(number, QLatin1String(action), native);
    throw Failure(EIO, QLatin1String(action) +
                           QStringLiteral(" \"%1\": %2.").arg(native, file.errorString()));
}

bool syncToDisk(int handle) {
#ifdef Q_OS_WIN
    return _commit(handle) == 0;
#else
    return fsync(handle) == 0;
#endif
}

/// Makes the new name itself survive a power cut, where the system has a way to say so.
void syncFolder([[maybe_unused]] const QString &folder) {
#ifndef Q_OS_WIN
    const int handle = open(QFile::encodeName(folder).constData(), O_RDONLY | O_DIRECTORY);
    if (handle < 0)
        return;
    fsync(handle);
    close(handle);
#endif
}

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
    constexpr auto action = "The template for new projects can't be read, file";
    QFile file(path);
    errno = 0;
    if (!file.open(QIODevice::ReadOnly))
        fail(file, action, path);
    const QByteArray bytes = file.readAll();
    if (file.error() != QFileDevice::NoError)
        fail(file, action, path);
    if (!isProject(bytes))
        throw Failure(damagedProject,
                      QStringLiteral("The template for new projects, file \"%1\", is damaged.")
                          .arg(QDir::toNativeSeparators(path)));
    return bytes;
}

/// Removed when this ends, unless it has got another name by then.
struct DraftFile : QFile {
    using QFile::QFile;
    ~DraftFile() override {
        close();
        if (exists())
            remove();
    }
};

/// A file of the engine beside the older file, such as the journal of a crashed program: it would
/// be played back into the new file. Comes back when this ends, unless dropped.
class SideFile {
public:
    SideFile(const QString &target, const char *suffix)
        : m_file(systemPath(target + QLatin1String(suffix))), m_aside(m_file) {
        m_aside += "-old";
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
    fs::path m_aside;
    bool m_moved = false;
};

/// A rename would replace a write-protected file or a device without asking for a right to it.
void refuseUnlessReplaceable(const QString &target) {
    const QFileInfo older(target);
    const int number = !older.exists()      ? 0
                       : older.isDir()      ? EISDIR
                       : !older.isFile()    ? EINVAL
                       : older.isWritable() ? 0
                                            : EACCES;
    if (number != 0)
        throw Failure::ofSystem(number, QLatin1String(makeAction),
                                QDir::toNativeSeparators(target));
}

} // namespace

void makeProject(const QString &templatePath, const QString &target) {
    const QByteArray bytes = readTemplate(templatePath);
    refuseUnlessReplaceable(target);
    // A link stays a link: what it leads to is replaced.
    const QFileInfo older(target);
    const QString place = older.exists() ? older.canonicalFilePath() : older.absoluteFilePath();
    const QString folder = QFileInfo(place).absolutePath();
    // A short name of its own: the target's may already be as long as the system allows.
    DraftFile draft(folder + QStringLiteral("/.veltrona-") +
                    QUuid::createUuid().toString(QUuid::Id128));
    errno = 0;
    if (!draft.open(QIODevice::WriteOnly | QIODevice::NewOnly))
        fail(draft, makeAction, target);
    if (draft.write(bytes) != bytes.size() || !draft.flush() || !syncToDisk(draft.handle()))
        fail(draft, makeAction, target);
    if (older.exists())
        draft.setPermissions(older.permissions());
    SideFile journal(place, "-journal");
    SideFile writeAheadLog(place, "-wal");
    std::error_code error;
    fs::rename(systemPath(draft.fileName()), systemPath(place), error);
    if (error)
        throw Failure::ofSystem(error.value(), QLatin1String(makeAction),
                                QDir::toNativeSeparators(target));
    journal.drop();
    writeAheadLog.drop();
    syncFolder(folder);
}

bool isSameFile(const QString &first, const QString &second) {
    std::error_code error;
    return fs::equivalent(systemPath(first), systemPath(second), error);
}

} // namespace veltrona
