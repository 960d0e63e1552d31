#include "core/database/projectFile.h"

#include "core/base/text.h"
#include "core/database/dayTable.h"
#include "core/platform/desktop/paths.h"
#include "core/platform/desktop/replacementFile.h"
#include "core/platform/services.h"
#include "core/platform/sqlite/fileHeader.h"

#include <QFile>
#include <QFileInfo>
#include <QScopeGuard>
#include <QStringList>

#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <span>
#include <system_error>

namespace veltrona {

namespace {

namespace fs = std::filesystem;

using desktop::nativePath;

constexpr auto makeAction = "Can't make the project"_L1;

[[noreturn]] void failToMake(int error, const QString &path) {
    throw Failure::ofSystem(error, makeAction, QDir::toNativeSeparators(path));
}

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
    const QString action = u"The template for new projects can't be read, file"_s;
    const QString native = QDir::toNativeSeparators(path);
    QFile file(path);
    errno = 0;
    const QByteArray bytes = file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    if (file.error() != QFileDevice::NoError)
        throw errno != 0 ? Failure::ofSystem(errno, action, native)
                         : Failure(EIO, action + u" \"%1\": %2."_s.arg(native, file.errorString()));
    if (!isProject(bytes))
        throw Failure(damagedProject,
                      u"The template for new projects, file \"%1\", is damaged."_s.arg(native));
    return bytes;
}

/// An older project may be there. SQLite takes no longer path.
void refuseUnlessFile(const QString &target) {
    const int error = desktop::ordinaryFileError(target, sqlite::maxPathBytes());
    if (error != 0 && error != ENOENT)
        failToMake(error, target);
}

/// "Garden set aside 2007-05-14 130509.vlt", with a number where that name is taken.
QString nameAside(const QString &path) {
    const qsizetype dot = path.lastIndexOf(u'.');
    const QString name =
        path.left(dot) + services().now().toString(u"' set aside 'yyyy-MM-dd hhmmss"_s);
    QString aside = name + path.mid(dot);
    for (int copy = 2; QFileInfo::exists(aside); ++copy)
        aside = name + u" %1"_s.arg(copy) + path.mid(dot);
    return aside;
}

/// Also for a broken link: its file may be on a drive that isn't mounted.
bool exists(const QString &path) {
    return QFileInfo::exists(path) || QFileInfo(path).isSymLink();
}

const QString sideEndings[] = {u"-journal"_s, u"-wal"_s};

/// Whether SQLite has left files beside a project. Throws if the name is too long for theirs.
bool hasSideFiles(const QString &project) {
    bool found = false;
    for (const QString &ending : sideEndings) {
        std::error_code error;
        const fs::file_type type = fs::symlink_status(nativePath(project + ending), error).type();
        if (type == fs::file_type::none)
            failToMake(error.value(), project);
        found = found || type != fs::file_type::not_found;
    }
    return found;
}

/// All that can be; returns the error of one that can't.
std::error_code removeSideFiles(const QString &project, std::span<const QString> endings) {
    std::error_code error;
    for (const QString &ending : endings) {
        std::error_code each;
        fs::remove(nativePath(project + ending), each);
        error = each ? each : error;
    }
    return error;
}

/// Renames a project, if there is one, and SQLite's files beside it. These get the new name before
/// the project and lose the old one after it, so that a program that is killed meanwhile leaves no
/// project without the journal that repairs it. After an error all have their old names.
std::error_code moveProject(const QString &from, const QString &to) {
    std::error_code error;
    QStringList linked;
    for (const QString &ending : sideEndings) {
        const fs::path file = nativePath(from + ending);
        std::error_code missing;
        if (error || !fs::is_regular_file(fs::symlink_status(file, missing)))
            continue;
        fs::create_hard_link(file, nativePath(to + ending), error);
        if (error) // such as a file system without links
            fs::copy_file(file, nativePath(to + ending), error);
        if (!error)
            linked << ending;
    }
    const bool moves = !error && exists(from);
    if (moves)
        fs::rename(nativePath(from), nativePath(to), error);
    std::error_code ignored;
    if (!error && (error = removeSideFiles(from, linked))) {
        for (const QString &ending : linked)
            fs::create_hard_link(nativePath(to + ending), nativePath(from + ending), ignored);
        if (moves)
            fs::rename(nativePath(to), nativePath(from), ignored);
    }
    if (error) {
        removeSideFiles(to, linked);
        return error;
    }
    for (const QString &ending : sideEndings) {
        if (!linked.contains(ending))
            fs::rename(nativePath(from + ending), nativePath(to + ending), ignored);
    }
    return error;
}

/// The journal of the older file must not be played back into the new one.
void replaceWithSideFiles(desktop::ReplacementFile &draft) {
    const QString &older = draft.target();
    const QString aside = nameAside(older);
    std::error_code error;
    const fs::file_status status = fs::status(nativePath(older), error);
    if (fs::exists(status) && !QFileInfo(older).isWritable())
        error = std::make_error_code(std::errc::permission_denied);
    else
        error = moveProject(older, aside);
    if (error)
        failToMake(error.value(), older);
    auto restore = qScopeGuard([&] { moveProject(aside, older); });
    if (fs::exists(status))
        fs::permissions(nativePath(draft.path()), status.permissions(), error);
    draft.commit();
    restore.dismiss();
    fs::remove(nativePath(aside), error);
    removeSideFiles(aside, sideEndings);
}

} // namespace

QString projectTitle(const QString &path, QChar separator) {
    const QString name = path.mid(path.lastIndexOf(separator) + 1);
    return name.left(name.lastIndexOf(u'.'));
}

void makeProject(const QString &templatePath, const QString &target) {
    const QByteArray bytes = readTemplate(templatePath);
    refuseUnlessFile(target);
    desktop::ReplacementFile draft(target, makeAction);
    draft.write({bytes.constData(), static_cast<std::size_t>(bytes.size())});
    if (hasSideFiles(draft.target()))
        replaceWithSideFiles(draft);
    else
        draft.commit();
}

void makeMissingProject(const QString &templatePath, const QString &target) {
    const QString folder = QFileInfo(target).path();
    if (!QDir().mkpath(folder))
        throw Failure::ofSystem(errno, u"Can't make the folder"_s, folder);
    if (exists(target))
        return;
    // The second of two first starts then finds the project and leaves it and its journal alone.
    const desktop::FileLock lock = desktop::lockFolder(folder);
    if (!exists(target))
        makeProject(templatePath, target);
}

void renameAside(const QString &path) {
    const QString native = QDir::toNativeSeparators(path);
    if (!exists(path) && !hasSideFiles(path))
        throw Failure(ENOENT, u"There is no file \"%1\" that could be set aside."_s.arg(native));
    if (const std::error_code error = moveProject(path, nameAside(path)))
        throw Failure(error.value(), u"The file \"%1\" can't be set aside: %2."_s.arg(
                                         native, qt_error_string(error.value())));
}

bool canRenameAside(const QString &path) {
    return exists(path) && QFileInfo(QFileInfo(path).path()).isWritable();
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
