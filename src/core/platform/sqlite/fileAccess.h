// The engine's way to the files of one connection: the system's own, except that it touches the
// database and its side files alone. A journal may name any file of the user's as one to look for
// and to delete, and what stands beside a project need not be a file at all.
#pragma once

#include <memory>
#include <sqlite3.h>
#include <string>

namespace veltrona::sqlite {

class FileAccess {
public:
    /// Known to the engine as `name()` while it lives; it must outlive its connection.
    FileAccess();
    ~FileAccess();
    FileAccess(const FileAccess &) = delete;
    FileAccess &operator=(const FileAccess &) = delete;

    const char *name() const { return m_name.c_str(); }
    /// In bytes; 0 while no database is open.
    sqlite3_int64 databaseSize() const;
    /// Why the engine was last refused a file since this was asked before; null if it wasn't.
    const char *takeRefusal();

private:
    static FileAccess &of(sqlite3_vfs *vfs) { return *static_cast<FileAccess *>(vfs->pAppData); }
    static int open(sqlite3_vfs *vfs, sqlite3_filename name, sqlite3_file *file, int flags,
                    int *outFlags);
    static int remove(sqlite3_vfs *vfs, const char *name, int syncsFolder);
    static int access(sqlite3_vfs *vfs, const char *name, int flags, int *result);
    template<auto Method>
    struct Forward;

    bool isOwn(const char *name) const;
    int refuse(int code, const char *reason);
    int openSideFile(sqlite3_filename name, sqlite3_file *file, int flags, int *outFlags);

    sqlite3_vfs *m_system;
    sqlite3_vfs m_vfs{};
    std::string m_name;
    std::string m_path;                 // of the database, as the engine names it
    sqlite3_file *m_database = nullptr; // the engine's
    const char *m_refusal = nullptr;
};

} // namespace veltrona::sqlite
