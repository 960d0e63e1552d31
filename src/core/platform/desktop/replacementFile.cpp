#include "core/platform/desktop/replacementFile.h"

#include "core/base/failure.h"
#include "core/platform/desktop/nativePath.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <cerrno>
#include <cstdio>
#include <memory>

#include <fcntl.h>
#include <unistd.h>

namespace veltrona::desktop {

namespace {

QString behindLinks(const QString &target) {
    const QFileInfo info(target);
    if (!info.isSymLink())
        return target;
    return info.exists() ? info.canonicalFilePath() : info.symLinkTarget();
}

/// Short, since the target's own name may be as long as the file system allows.
QString nameBeside(const QString &target) {
    static int counter = 0;
    const QString folder = target.left(target.lastIndexOf(QDir::separator()) + 1);
    return folder + QStringLiteral(".unfinished-%1-%2.tmp")
                        .arg(QCoreApplication::applicationPid())
                        .arg(++counter);
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

ReplacementFile::ReplacementFile(const QString &target, const QString &action)
    : m_name(target), m_action(action), m_target(behindLinks(target)) {
    const QFileInfo info(m_target);
    const bool isDevice = info.exists() && !info.isFile() && !info.isDir();
    m_path = isDevice ? m_target : nameBeside(m_target);
}

void ReplacementFile::fail(int error) const {
    throw Failure::ofSystem(error, m_action, QDir::toNativeSeparators(m_name));
}

ReplacementFile::~ReplacementFile() {
    if (replaces() && !m_committed)
        QFile::remove(m_path);
}

void ReplacementFile::write(std::string_view content) {
    while (replaces() && QFileInfo::exists(m_path))
        m_path = nameBeside(m_target);
    std::unique_ptr<std::FILE, CloseFile> file(
        std::fopen(QFile::encodeName(m_path).constData(), replaces() ? "wbx" : "wb"));
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
