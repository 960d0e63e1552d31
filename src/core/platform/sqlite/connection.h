// A small RAII layer over SQLite: a connection to one database file and prepared statements with
// bound values. Every failure is thrown as Failure, with SQLite's extended result code and a text
// that names the file. A connection must outlive its statements. Files aren't trusted: nothing in
// the schema runs, no other file is touched, and texts and work are bounded.
#pragma once

#include "core/base/failure.h"
#include "core/platform/sqlite/workLimit.h"

#include <QElapsedTimer>
#include <QString>

#include <memory>
#include <optional>
#include <sqlite3.h>
#include <string_view>

namespace veltrona::sqlite {

/// Reading a longer text is a failure.
inline constexpr int maxTextBytes = 10'000'000;

/// Of a database's path: SQLite has to append the ending of its journal's name.
int maxPathBytes();

/// The result codes that the program distinguishes.
enum class Result {
    Ok = SQLITE_OK,
    Error = SQLITE_ERROR, // the statement doesn't compile: bad SQL, or another schema
    Abort = SQLITE_ABORT,
    Busy = SQLITE_BUSY,
    NoMemory = SQLITE_NOMEM,
    Corrupt = SQLITE_CORRUPT,
    Schema = SQLITE_SCHEMA,
    Constraint = SQLITE_CONSTRAINT,
    Mismatch = SQLITE_MISMATCH,
    NotADatabase = SQLITE_NOTADB,
    Row = SQLITE_ROW,
    Done = SQLITE_DONE,
    FileMoved = SQLITE_READONLY_DBMOVED, // the one extended code here
};

/// The kind of failure that an extended result code refines.
constexpr Result primary(int code) {
    return static_cast<Result>(code & 0xff);
}

/// Whether another program holds the database.
inline bool isLocked(const Failure &failure) {
    return primary(failure.number()) == Result::Busy;
}

/// The values are SQLite's.
enum class ValueType { Integer = 1, Real = 2, Text = 3, Blob = 4, Null = 5 };

/// A column of a table as its declaration has it.
struct DeclaredColumn {
    QString type;          // as written, which decides the affinity
    bool isBinary = false; // compares by bytes
    bool isPrimaryKey = false;
};

/// Waits for the locks of other programs, within the services' lockWait for each and their
/// lockWaitOfCommand in all: an import has many batches, each of which may have to wait.
class BusyTimeout {
public:
    /// Sleeps a little and returns whether to try again. `attempt` counts from 0 for each lock.
    /// After giving up it waits for no lock in the same command, unless it is reset.
    bool wait(int attempt);
    void reset() { m_gaveUpIn = 0; }

private:
    QElapsedTimer m_timer;
    qint64 m_counted = 0;
    long m_gaveUpIn = 0;
};

class Connection;
/// A prepared statement; parameters count from 1, columns from 0.
class Statement {
public:
    explicit operator bool() const { return m_statement != nullptr; }

    void bind(int parameter, qint64 value) {
        check(sqlite3_bind_int64(handle(), parameter, value));
    }
    void bind(int parameter, double value) {
        check(sqlite3_bind_double(handle(), parameter, value));
    }
    /// UTF-8, copied.
    void bind(int parameter, std::string_view text);
    void bind(int parameter, const QString &text);

    /// True while there is a row; throws on failure.
    bool step() { return run(Result::Ok) == Result::Row; }
    /// Row or Done, or `expected`: the failure that the caller handles itself. Throws on others.
    Result run(Result expected);
    /// Makes the statement ready to run again; bindings stay.
    void reset();

    ValueType type(int column) const {
        return static_cast<ValueType>(sqlite3_column_type(handle(), column));
    }
    qint64 int64(int column) const { return sqlite3_column_int64(handle(), column); }
    double real(int column) const { return sqlite3_column_double(handle(), column); }
    /// Valid until the next step, reset or conversion of this column.
    std::string_view utf8(int column) const;
    QString text(int column) const;

    /// For the sources of this folder alone.
    sqlite3_stmt *handle() const { return m_statement.get(); }

private:
    friend class Connection;
    struct Finalize {
        void operator()(sqlite3_stmt *statement) const { sqlite3_finalize(statement); }
    };
    void check(int code) const;

    const Connection *m_connection = nullptr;
    std::unique_ptr<sqlite3_stmt, Finalize> m_statement;
};

class Connection {
public:
    Connection();
    ~Connection();
    Q_DISABLE_COPY_MOVE(Connection)

    /// Opens an existing file for reading and writing; a missing file, or one that can't be
    /// written, is a failure. Never creates a file and reads nothing of its content.
    void open(const QString &path);
    /// An open transaction is rolled back.
    void close() noexcept;
    bool isOpen() const { return m_handle != nullptr; }
    const QString &path() const { return m_path; }

    /// Runs all statements of a text; their rows are dropped.
    void execute(std::string_view sql);
    /// Exactly one statement; anything after it is a failure.
    Statement prepare(std::string_view sql) const;
    /// Whether a statement compiles against the schema of this file; throws on other failures.
    bool compiles(std::string_view sql) const;
    /// Nothing if the table has no such column.
    std::optional<DeclaredColumn> column(const char *table, const char *name) const;
    /// The first value of the statement's first row; 0 if there is no row.
    qint64 number(std::string_view sql) const;
    /// Records changed by the last insert, update or delete.
    qint64 changes() const { return sqlite3_changes64(handle()); }
    /// Records changed since the file was opened, those of rolled back transactions too.
    qint64 totalChanges() const { return sqlite3_total_changes64(handle()); }
    /// Changes whenever another connection commits a change to the file.
    qint64 dataVersion() const { return number("PRAGMA data_version"); }
    /// Frees the pages of the file that SQLite holds in its cache.
    void freeCache() const { sqlite3_db_release_memory(handle()); }

    /// Allows the running command that many more steps of SQLite's virtual machine.
    void allowWork(qint64 steps) { m_workLimit.allow(steps); }

    /// True if another program has deleted, renamed or replaced the file since it was opened.
    /// SQLite then refuses to write; reading still works.
    bool hasMoved() const;

    /// For the sources of this folder alone.
    sqlite3 *handle() const { return m_handle.get(); }
    /// Of the connection's last error, whose result code is `code`.
    Failure failure(int code) const;
    [[noreturn]] void fail(int code) const;
    WorkLimit &workLimit() const { return m_workLimit; }
    /// Throws Failure if the statement's texts are more than the file can hold, or this one is
    /// longer than maxTextBytes.
    void countText(int bytes) const;
    /// After a commit.
    void resetBusyTimeout() { m_busyTimeout.reset(); }

private:
    static constexpr int workStep = 1'000'000;
    struct Close {
        void operator()(sqlite3 *handle) const { sqlite3_close_v2(handle); }
    };

    /// Cuts the first statement off `sql`; an empty one where it held a comment alone.
    /// An empty one also after the failure `expected`; throws on others.
    Statement prepareFirst(std::string_view &sql, Result expected = Result::Ok) const;

    static int waitForLock(void *self, int attempt);
    static int countWork(void *self);

    std::unique_ptr<FileAccess> m_files; // outlives the handle
    std::unique_ptr<sqlite3, Close> m_handle;
    QString m_path;
    BusyTimeout m_busyTimeout;
    mutable WorkLimit m_workLimit;
};

/// Rolled back unless committed. By default a write transaction that locks the file at once.
class Transaction {
public:
    explicit Transaction(Connection &connection, std::string_view begin = "BEGIN IMMEDIATE");
    ~Transaction();
    void commit();
    Q_DISABLE_COPY_MOVE(Transaction)

private:
    Connection &m_connection;
    bool m_open = true;
};

/// While one lives, all statements read the same state of the file: other programs wait with their
/// commits. Only the first statement waits for a lock. Inside an open transaction it does nothing.
class ReadTransaction {
public:
    explicit ReadTransaction(Connection &connection);

private:
    std::optional<Transaction> m_transaction;
};

} // namespace veltrona::sqlite
