#include "core/platform/desktop/replacementFile.h"

#include "core/base/failure.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <memory>

namespace veltrona::desktop {

namespace {

std::filesystem::path nativePath(const QString &path) {
    return QFile::encodeName(path).toStdString();
}

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
    return folder + QStringLiteral(".veltrona-%1-%2.tmp")
                        .arg(QCoreApplication::applicationPid())
                        .arg(++counter);
}

[[noreturn]] void fail(int error, const QString &target) {
    throw Failure::ofSystem(error, QStringLiteral("Can't write the file"),
                            QDir::toNativeSeparators(target));
}

} // namespace

ReplacementFile::ReplacementFile(const QString &target) : m_target(behindLinks(target)) {
    const QFileInfo info(m_target);
    const bool isDevice = info.exists() && !info.isFile() && !info.isDir();
    m_path = isDevice ? m_target : nameBeside(m_target);
}

ReplacementFile::~ReplacementFile() {
    if (replaces() && !m_committed)
        QFile::remove(m_path);
}

void ReplacementFile::write(std::string_view content) {
    struct Close {
        void operator()(std::FILE *file) const { std::fclose(file); }
    };
    while (replaces() && QFileInfo::exists(m_path))
        m_path = nameBeside(m_target);
    std::unique_ptr<std::FILE, Close> file(
        std::fopen(QFile::encodeName(m_path).constData(), replaces() ? "wbx" : "wb"));
    if (!file)
        fail(errno, m_target);
    if (std::fwrite(content.data(), 1, content.size(), file.get()) != content.size() ||
        std::fflush(file.get()) != 0)
        fail(errno, m_target);
    // Some file systems tell only now that there was no room.
    if (std::fclose(file.release()) != 0)
        fail(errno, m_target);
}

void ReplacementFile::commit() {
    if (!replaces())
        return;
    std::error_code error;
    const auto before = std::filesystem::status(nativePath(m_target), error);
    if (std::filesystem::exists(before)) {
        if (!QFileInfo(m_target).isWritable())
            fail(EACCES, m_target);
        std::filesystem::permissions(nativePath(m_path), before.permissions(), error);
    }
    std::filesystem::rename(nativePath(m_path), nativePath(m_target), error);
    if (error)
        fail(error.value(), m_target);
    m_committed = true;
}

} // namespace veltrona::desktop
