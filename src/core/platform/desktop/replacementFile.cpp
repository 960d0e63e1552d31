#include "core/platform/desktop/replacementFile.h"

#include "core/base/failure.h"
#include "core/platform/desktop/nativePath.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <memory>
#include <utility>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace veltrona::desktop {

namespace {

QString behindLinks(const QString &target) {
    const QFileInfo info(target);
    if (!info.isSymLink())
        return target;
    return info.exists() ? info.canonicalFilePath() : info.symLinkTarget();
}

/// The number in a name of ours; the picture's codec makes its file anew, which isn't held then.
bool isOfRunningProgram(const QString &unfinished) {
    const int process = unfinished.section(QLatin1Char('-'), 1, 1).toInt();
    return process > 0 && (kill(process, 0) == 0 || errno == EPERM);
}

/// Those that a killed program has left, also one on another computer.
void removeUnfinished(const QString &target) {
    const QDir folder = QFileInfo(target).absoluteDir();
    for (const QString &name : folder.entryList({QStringLiteral(".unfinished-*.tmp")},
                                                QDir::Files | QDir::Hidden | QDir::NoSymLinks)) {
        if (isOfRunningProgram(name))
            continue;
        const QString path = folder.filePath(name);
        const FileHold left(path, O_RDWR | O_NOFOLLOW | O_NONBLOCK);
        if (left.isOpen() && left.error() == 0)
            QFile::remove(path);
    }
}

struct CloseFile {
    void operator()(std::FILE *file) const { std::fclose(file); }
};

/// The error number of the system, 0 for none.
int sync(const QString &path, int flags) {
    const int handle = open(QFile::encodeName(path).constData(), flags | O_RDONLY | O_CLOEXEC);
    if (handle < 0)
        return errno;
    const int error = fsync(handle) == 0 ? 0 : errno;
    close(handle);
    return error;
}

} // namespace

FileHold::FileHold(const QString &path, int openFlags)
    : m_handle(open(QFile::encodeName(path).constData(), openFlags | O_CLOEXEC, 0666)) {
    if (m_handle < 0 || flock(m_handle, LOCK_EX | LOCK_NB) != 0)
        m_error = errno;
}

FileHold::~FileHold() {
    if (m_handle >= 0)
        close(m_handle);
}

FileHold::FileHold(FileHold &&other) noexcept
    : m_handle(std::exchange(other.m_handle, -1)), m_error(other.m_error) {}

FileHold &FileHold::operator=(FileHold &&other) noexcept {
    std::swap(m_handle, other.m_handle);
    std::swap(m_error, other.m_error);
    return *this;
}

bool FileHold::isHeld() const {
    return isOpen() && m_error != EWOULDBLOCK;
}

bool FileHold::isLinked() const {
    struct stat status {};
    return isOpen() && fstat(m_handle, &status) == 0 && status.st_nlink > 0;
}

QString unfinishedName(const QString &target) {
    static int counter = 0;
    const QString folder = target.left(target.lastIndexOf(QDir::separator()) + 1);
    return folder + QStringLiteral(".unfinished-%1-%2.tmp")
                        .arg(QCoreApplication::applicationPid())
                        .arg(++counter);
}

ReplacementFile::ReplacementFile(const QString &target, const QString &action)
    : m_name(target), m_action(action), m_target(behindLinks(target)) {
    const QFileInfo info(m_target);
    const bool isDevice = info.exists() && !info.isFile() && !info.isDir();
    m_path = m_target;
    if (isDevice)
        return;
    removeUnfinished(m_target);
    // Another program may take a file for left over before it is held.
    do {
        m_path = unfinishedName(m_target);
        m_hold = FileHold(m_path, O_RDWR | O_CREAT | O_EXCL);
        m_error = m_hold.isOpen() ? 0 : m_hold.error();
    } while (m_error == EEXIST || (m_error == 0 && !(m_hold.isHeld() && m_hold.isLinked())));
}

void ReplacementFile::fail(int error) const {
    throw Failure::ofSystem(error, m_action, QDir::toNativeSeparators(m_name));
}

ReplacementFile::~ReplacementFile() {
    if (replaces() && !m_committed && m_error == 0)
        QFile::remove(m_path);
}

void ReplacementFile::write(std::string_view content) {
    if (m_error != 0)
        fail(m_error);
    std::unique_ptr<std::FILE, CloseFile> file(
        std::fopen(QFile::encodeName(m_path).constData(), "wb"));
    if (!file)
        fail(errno);
    if (std::fwrite(content.data(), 1, content.size(), file.get()) != content.size() ||
        std::fflush(file.get()) != 0)
        fail(errno);
    // Some file systems tell only now that there was no room.
    if (std::fclose(file.release()) != 0)
        fail(errno);
}

void ReplacementFile::commit() {
    if (!replaces())
        return;
    if (const int unsynced = sync(m_path, 0))
        fail(unsynced);
    std::error_code error;
    const auto before = std::filesystem::status(nativePath(m_target), error);
    if (std::filesystem::exists(before)) {
        if (!QFileInfo(m_target).isWritable())
            fail(EACCES);
        std::filesystem::permissions(nativePath(m_path), before.permissions(), error);
    }
    std::filesystem::rename(nativePath(m_path), nativePath(m_target), error);
    if (error)
        fail(error.value());
    m_committed = true;
    // Makes the new name survive a power cut; the file is whole without it.
    sync(QFileInfo(m_target).absolutePath(), O_DIRECTORY);
}

} // namespace veltrona::desktop
