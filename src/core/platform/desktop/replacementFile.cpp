#include "core/platform/desktop/replacementFile.h"

#include "core/base/failure.h"
#include "core/platform/desktop/paths.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>
#include <QThread>

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <filesystem>
#include <memory>
#include <system_error>
#include <utility>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace veltrona::desktop {

namespace {

QString resolved(const QString &target) {
    const QFileInfo info(target);
    if (!info.isSymLink())
        return target;
    return info.exists() ? info.canonicalFilePath() : info.symLinkTarget();
}

QString unfinishedStart() {
    return u'.' + QCoreApplication::applicationName() + QStringLiteral("-unfinished-");
}

/// Removes temporary files of killed processes, possibly on another host.
void removeUnfinished(const QString &target) {
    const QDir folder = QFileInfo(target).absoluteDir();
    static const QRegularExpression ours(QRegularExpression::anchoredPattern(
        QRegularExpression::escape(unfinishedStart()) + "([1-9][0-9]*)-[1-9][0-9]*\\.tmp"));
    for (const QString &name :
         folder.entryList(QDir::Files | QDir::Hidden | QDir::NoSymLinks, QDir::Unsorted)) {
        const int process = ours.match(name).captured(1).toInt();
        const bool isRunning = process > 0 && (kill(process, 0) == 0 || errno == EPERM);
        if (process == 0 || isRunning)
            continue;
        const QString path = folder.filePath(name);
        const FileLock left(path, O_RDWR | O_NOFOLLOW | O_NONBLOCK);
        if (left.isOpen() && left.error() == 0)
            QFile::remove(path);
    }
}

struct CloseFile {
    void operator()(std::FILE *file) const { std::fclose(file); }
};

/// The handle; -1 with errno on failure.
int openEmptied(const char *name) {
    const int handle = open(name, O_WRONLY | O_CREAT | O_TRUNC | O_NONBLOCK | O_CLOEXEC, 0666);
    struct stat status {};
    if (handle < 0 || fstat(handle, &status) != 0)
        return handle;
    if (S_ISFIFO(status.st_mode)) {
        close(handle);
        errno = ENXIO; // as for a pipe that nobody reads, and a socket
        return -1;
    }
    fcntl(handle, F_SETFL, fcntl(handle, F_GETFL) & ~O_NONBLOCK);
    return handle;
}

} // namespace

FileLock::FileLock(const QString &path, int openFlags, unsigned mode)
    : m_handle(open(QFile::encodeName(path).constData(), openFlags | O_CLOEXEC, mode)) {
    if (m_handle < 0 || flock(m_handle, LOCK_EX | LOCK_NB) != 0)
        m_error = errno;
}

FileLock::~FileLock() {
    if (m_handle >= 0)
        close(m_handle);
}

FileLock::FileLock(FileLock &&other) noexcept
    : m_handle(std::exchange(other.m_handle, -1)), m_error(other.m_error) {}

FileLock &FileLock::operator=(FileLock &&other) noexcept {
    std::swap(m_handle, other.m_handle);
    std::swap(m_error, other.m_error);
    return *this;
}

bool FileLock::isLocked() const {
    return isOpen() && m_error != EWOULDBLOCK;
}

bool FileLock::isLinked() const {
    struct stat status {};
    return isOpen() && fstat(m_handle, &status) == 0 && status.st_nlink > 0;
}

std::FILE *openForWriting(int handle, const char *name) {
    const int own = handle >= 0 ? dup(handle) : openEmptied(name);
    return own < 0 ? nullptr : fdopen(own, "wb");
}

QString unfinishedName(const QString &target) {
    static int counter = 0;
    const QString folder = target.left(target.lastIndexOf(QDir::separator()) + 1);
    return folder + unfinishedStart() +
           QStringLiteral("%1-%2.tmp").arg(QCoreApplication::applicationPid()).arg(++counter);
}

FileLock lockFolder(const QString &folder) {
    constexpr int tries = 300;
    FileLock lock;
    for (int i = 0; i < tries && !lock.isLocked(); ++i) {
        if (i > 0)
            QThread::msleep(10);
        lock = FileLock(folder, O_RDONLY | O_DIRECTORY);
    }
    return lock;
}

ReplacementFile::ReplacementFile(const QString &target, const QString &action)
    : m_name(target), m_action(action), m_target(resolved(target)), m_path(m_target) {
    if (ordinaryFileError(m_target) == EINVAL)
        return;
    removeUnfinished(m_target);
    // The older file's permissions are set when its content is replaced, not before.
    const mode_t mode = QFileInfo::exists(m_target) ? 0600 : 0666;
    // Another program may remove a file as left over before it is locked.
    do {
        m_path = unfinishedName(m_target);
        m_lock = FileLock(m_path, O_RDWR | O_CREAT | O_EXCL, mode);
        m_error = m_lock.isOpen() ? 0 : m_lock.error();
    } while (m_error == EEXIST || (m_error == 0 && !(m_lock.isLocked() && m_lock.isLinked())));
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
        openForWriting(m_lock.handle(), QFile::encodeName(m_path).constData()));
    if (!file)
        fail(errno);
    if (std::fwrite(content.data(), 1, content.size(), file.get()) != content.size() ||
        std::fflush(file.get()) != 0)
        fail(errno);
    // Some file systems report a full disk only here.
    if (std::fclose(file.release()) != 0)
        fail(errno);
}

void ReplacementFile::commit() {
    if (!replaces())
        return;
    if (fsync(m_lock.handle()) != 0)
        fail(errno);
    struct stat before {};
    if (stat(QFile::encodeName(m_target).constData(), &before) == 0) {
        if (!QFileInfo(m_target).isWritable())
            fail(EACCES);
        fchmod(m_lock.handle(), before.st_mode & 07777);
    }
    std::error_code error;
    std::filesystem::rename(nativePath(m_path), nativePath(m_target), error);
    if (error)
        fail(error.value());
    m_committed = true;
    // Makes the new name survive a power cut; the file is complete without it.
    const FileLock folder(QFileInfo(m_target).absolutePath(), O_RDONLY | O_DIRECTORY);
    fsync(folder.handle());
}

} // namespace veltrona::desktop
