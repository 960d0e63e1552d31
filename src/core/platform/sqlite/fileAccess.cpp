#include "core/platform/sqlite/fileAccess.h"

#include "core/platform/sqlite/journalState.h"

#include <cstdint>
#include <filesystem>
#include <string_view>
#include <system_error>
#include <utility>

namespace veltrona::sqlite {

namespace {

namespace fs = std::filesystem;

constexpr auto notRegular =
    "the journal beside it isn't an ordinary file; move away what stands there under its name with "
    "\"-journal\", \"-wal\" or \"-shm\" behind it";
constexpr auto severalFiles =
    "the journal beside it belongs to a change of several databases at once; only the program that "
    "made that change can take it back, so open the file with that program first";
constexpr auto otherState =
    "the journal beside it, left by a program that broke off, was made for another state of this "
    "file, as when a backup is put in a project's place; playing it back would spoil the file. If "
    "the file is the one that you want, move the journal (the same name with \"-journal\" behind "
    "it) to another folder and open the file again";

/// Links count as what they are, since SQLite would write through them.
bool isMissingOrRegular(const std::string &name) {
    std::error_code error;
    const fs::path path(std::u8string(name.begin(), name.end()));
    const fs::file_type type = fs::symlink_status(path, error).type();
    return type == fs::file_type::not_found || type == fs::file_type::regular;
}

} // namespace

FileAccess::FileAccess()
    : sqlite3_vfs(*sqlite3_vfs_find(nullptr)), m_system(sqlite3_vfs_find(nullptr)),
      m_name("veltrona-" + std::to_string(reinterpret_cast<std::uintptr_t>(this))) {
    pNext = nullptr;
    zName = m_name.c_str();
    xOpen = open;
    xDelete = remove;
    xAccess = access;
    sqlite3_vfs_register(this, 0);
}

FileAccess::~FileAccess() {
    sqlite3_vfs_unregister(this);
}

sqlite3_int64 FileAccess::databaseSize() const {
    sqlite3_int64 size = 0;
    if (m_database && m_database->pMethods)
        m_database->pMethods->xFileSize(m_database, &size);
    return size;
}

const char *FileAccess::takeRefusal() {
    return std::exchange(m_refusal, nullptr);
}

int FileAccess::open(sqlite3_vfs *vfs, sqlite3_filename name, sqlite3_file *file, int flags,
                     int *outFlags) {
    FileAccess &self = of(vfs);
    file->pMethods = nullptr;
    if (flags & SQLITE_OPEN_SUPER_JOURNAL)
        return self.refuse(SQLITE_CANTOPEN, severalFiles);
    if (flags & (SQLITE_OPEN_MAIN_JOURNAL | SQLITE_OPEN_WAL))
        return self.openSideFile(name, file, flags, outFlags);
    if (flags & SQLITE_OPEN_MAIN_DB) {
        self.m_path = name;
        self.m_database = file;
    }
    return self.m_system->xOpen(self.m_system, name, file, flags, outFlags);
}

int FileAccess::openSideFile(sqlite3_filename name, sqlite3_file *file, int flags, int *outFlags) {
    // SQLite opens the -shm file by itself, together with the -wal.
    const bool isLog = flags & SQLITE_OPEN_WAL;
    if (!isMissingOrRegular(name) || (isLog && !isMissingOrRegular(m_path + "-shm")))
        return refuse(SQLITE_CANTOPEN, notRegular);
    const int code = m_system->xOpen(m_system, name, file, flags, outFlags);
    // A journal that is opened for writing and not created is about to be played back; SQLite holds
    // the exclusive lock by now.
    const bool isPlayback =
        !isLog && (flags & SQLITE_OPEN_READWRITE) && !(flags & SQLITE_OPEN_CREATE);
    if (code != SQLITE_OK || !isPlayback || belongsTogether(*file, *m_database))
        return code;
    file->pMethods->xClose(file);
    file->pMethods = nullptr;
    return refuse(SQLITE_CANTOPEN, otherState);
}

int FileAccess::remove(sqlite3_vfs *vfs, const char *name, int syncsFolder) {
    FileAccess &self = of(vfs);
    if (!self.isOwn(name) || name == self.m_path)
        return self.refuse(SQLITE_IOERR_DELETE, severalFiles);
    return self.m_system->xDelete(self.m_system, name, syncsFolder);
}

/// Whether a file that a journal names exists would decide what becomes of that journal.
int FileAccess::access(sqlite3_vfs *vfs, const char *name, int flags, int *result) {
    FileAccess &self = of(vfs);
    if (!self.isOwn(name))
        return self.refuse(SQLITE_IOERR_ACCESS, severalFiles);
    return self.m_system->xAccess(self.m_system, name, flags, result);
}

bool FileAccess::isOwn(const char *name) const {
    const std::string_view text(name);
    if (!text.starts_with(m_path))
        return false;
    const std::string_view rest = text.substr(m_path.size());
    return rest.empty() || rest == "-journal" || rest == "-wal";
}

int FileAccess::refuse(int code, const char *reason) {
    m_refusal = reason;
    return code;
}

} // namespace veltrona::sqlite
