// SQLite behind a small RAII layer: a connection to one database file and prepared statements with
// bound values. Every failure is thrown as Failure, with SQLite's extended result code and a text
// that names the file. A connection must outlive its statements. Locks of other programs are waited
// for as lockPatience.h says. A file may be anybody's: nothing in its schema runs, no other file is
// touched, and texts and work have their bounds.
#pragma once

#include "core/base/failure.h"
#include "core/platform/sqlite/lockPatience.h"

#include <QString>

#include <string_view>

struct sqlite3;
struct sqlite3_stmt;

namespace veltrona::sqlite {

/// In bytes; a longer one that is read is a failure.
inline constexpr int longestText = 10'000'000;

/// In bytes, of the path of a database: the engine has to add its journal's name.
int longestPath();

enum class ValueType { Integer = 1, Real = 2, Text = 3, Blob = 4, Null = 5 };

class Connection;
class FileAccess;

/// A prepared statement; parameters count from 1, columns from 0.
class Statement {
public:
    Statement() = default;
    Statement(Statement &&other) noexcept;
    Statement &operator=(Statement &&other) noexcept;
    ~Statement();

    explicit operator bool() const { return m_statement != nullptr; }

    void bind(int parameter, qint64 value);
    void bind(int parameter, double value);
    /// UTF-8, copied.
    void bind(int parameter, std::string_view text);
    void bind(int parameter, const QString &text);

    /// True while there is a row; throws on failure.
    bool step();
    /// Makes the statement ready to run again; bindings stay.
    void reset();

    ValueType type(int column) const;
    qint64 int64(int column) const;
    double real(int column) const;
    /// Valid until the next step, reset or conversion of this column.
    std::string_view utf8(int column) const;
    QString text(int column) const;

private:
    friend class Connection;
    Statement(const Connection *connection, sqlite3_stmt *statement)
        : m_connection(connection), m_statement(statement) {}
    void check(int code) const;

    const Connection *m_connection = nullptr;
    sqlite3_stmt *m_statement = nullptr;
};

class Connection {
public:
    Connection();
    ~Connection();
    Connection(const Connection &) = delete;
    Connection &operator=(const Connection &) = delete;

    /// Opens an existing file for reading and writing; a missing file, or one that can't be
    /// written, is a failure, and no file is ever made by opening. Looks at nothing inside.
    void open(const QString &path);
    /// An open transaction is rolled back.
    void close() noexcept;
    bool isOpen() const { return m_handle != nullptr; }
    const QString &path() const { return m_path; }

    /// Runs statements that give no rows; results are dropped.
    void execute(std::string_view sql);
    /// Exactly one statement; anything behind it is a failure.
    Statement prepare(std::string_view sql) const;
    /// Records changed by the last insert, update or delete.
    qint64 changes() const;
    /// Records changed since the file was opened, those of rolled back transactions too.
    qint64 totalChanges() const;
    /// Another number as soon as another connection has committed a change to the file.
    qint64 dataVersion() const;

    /// True if the file that was opened is no longer what stands at its path: deleted, renamed or
    /// replaced by another program. Writing then fails by itself; reading goes on.
    bool hasMoved() const;

    /// For the sources of this folder alone.
    sqlite3 *handle() const { return m_handle; }
    /// The Failure for the connection's last error, whose result code is `code`.
    Failure failure(int code) const;
    [[noreturn]] void fail(int code) const;
    /// From here on the work of one more statement is counted.
    void beginWork() const { m_work = 0; }
    /// After a commit.
    void renewPatience() { m_patience.renew(); }

private:
    static constexpr int workStep = 1'000'000;

    /// Cuts the first statement off `sql`; an empty one where it held a comment alone.
    Statement prepareFirst(std::string_view &sql) const;

    static int waitForLock(void *self, int attempt);
    static int countWork(void *self);

    std::unique_ptr<FileAccess> m_files; // outlives the handle
    sqlite3 *m_handle = nullptr;
    QString m_path;
    LockPatience m_patience;
    mutable qint64 m_work = 0; // steps of the engine
};

/// A write transaction, begun at once (BEGIN IMMEDIATE); rolled back unless committed.
class Transaction {
public:
    explicit Transaction(Connection &connection);
    ~Transaction();
    void commit();
    Transaction(const Transaction &) = delete;
    Transaction &operator=(const Transaction &) = delete;

private:
    Connection &m_connection;
    bool m_open = true;
};

/// While one lives, all statements read one and the same state of the file: other programs wait
/// with their commits. The file is waited for at the first statement alone. Inside a transaction
/// that is open already it does nothing.
class ReadTransaction {
public:
    explicit ReadTransaction(Connection &connection);
    ~ReadTransaction();
    ReadTransaction(const ReadTransaction &) = delete;
    ReadTransaction &operator=(const ReadTransaction &) = delete;

private:
    Connection &m_connection;
    bool m_begun;
};

} // namespace veltrona::sqlite
