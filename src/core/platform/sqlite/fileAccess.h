// SQLite's access to the files of one connection: the system's VFS, except that it touches the
// database and its side files alone. A journal may name any file of the user's as one to look for
// and to delete, and what lies beside a project need not be a regular file.
#pragma once

#include <QtGlobal>

#include <sqlite3.h>
#include <string>
#include <utility>

namespace veltrona::sqlite {

class FileAccess : private sqlite3_vfs {
public:
    /// Registered with SQLite as `name()` while it lives; it must outlive its connection.
    FileAccess();
    ~FileAccess();
    Q_DISABLE_COPY_MOVE(FileAccess)

    const char *name() const { return m_name.c_str(); }
    /// In bytes; 0 while no database is open.
    sqlite3_int64 databaseSize() const;
    /// Why a file was refused since the last call; null if none was.
    const char *takeRefusal() { return std::exchange(m_refusal, nullptr); }

private:
    static FileAccess &of(sqlite3_vfs *vfs) { return *static_cast<FileAccess *>(vfs); }
    static int open(sqlite3_vfs *vfs, sqlite3_filename name, sqlite3_file *file, int flags,
                    int *outFlags);
    static int remove(sqlite3_vfs *vfs, const char *name, int syncsFolder);
    static int access(sqlite3_vfs *vfs, const char *name, int flags, int *result);

    bool isOwn(const char *name) const;
    int refuse(int code, const char *reason);
    int openSideFile(sqlite3_filename name, sqlite3_file *file, int flags, int *outFlags);

    sqlite3_vfs *m_system;
    std::string m_name;
    std::string m_path;                 // of the database, as SQLite names it
    sqlite3_file *m_database = nullptr; // SQLite's
    const char *m_refusal = nullptr;
};

} // namespace veltrona::sqlite
