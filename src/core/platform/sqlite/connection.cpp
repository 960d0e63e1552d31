#include "core/platform/sqlite/connection.h"

#include "core/base/command.h"
#include "core/base/storedText.h"
#include "core/base/text.h"
#include "core/platform/desktop/paths.h"
#include "core/platform/services.h"
#include "core/platform/sqlite/fileAccess.h"
#include "core/platform/sqlite/recordScan.h"

#include <QDir>
#include <QFileInfo>
#include <QThread>

#include <algorithm>
#include <cerrno>
#include <utility>

namespace veltrona::sqlite {

namespace {

struct Reason {
    int code; // a primary or an extended result code; the extended ones come first
    const char *text;
};

constexpr Reason reasons[] = {
    {SQLITE_READONLY_DBMOVED, "it was renamed, deleted or replaced while it was open"},
    {SQLITE_READONLY_DIRECTORY,
     "its folder can't be written, and a journal has to stand beside it"},
    {SQLITE_BUSY, "it is locked by another program; try again when that program is done"},
    {SQLITE_LOCKED, "it is locked by a command that is still running"},
    {SQLITE_READONLY, "it can't be written: the file, its folder or its drive is read-only"},
    {SQLITE_PERM, "the system denies access to it"},
    {SQLITE_AUTH, "the system denies access to it"},
    {SQLITE_FULL, "the disk is full; free some space on the drive that holds it and try again"},
    {SQLITE_IOERR, "reading or writing it failed"},
    {SQLITE_CORRUPT, "it is damaged"},
    {SQLITE_NOTADB, "it isn't a database, or it is damaged"},
    {SQLITE_CANTOPEN, "the file, or the journal beside it, can't be opened"},
    {SQLITE_NOMEM, "there isn't enough memory"},
    {SQLITE_TOOBIG, "a value in it is larger than any that a report can hold"},
    {SQLITE_INTERRUPT, "reading it takes more work than a file of its size can; it is damaged"},
};

/// SQLite reports a full disk where the numbers of an AUTOINCREMENT column are used up.
bool hasUsedUpNumbers(sqlite3 *handle) {
    constexpr auto used = "SELECT 1 FROM sqlite_sequence WHERE CAST(seq AS INTEGER) > 9e18";
    const auto abortAtRow = [](void *, int, char **, char **) { return 1; };
    return sqlite3_exec(handle, used, abortAtRow, nullptr, nullptr) == SQLITE_ABORT;
}

/// The system's error of the last call to SQLite, as the end of a sentence. SQLite itself keeps
/// none for a COMMIT.
QString systemReason(sqlite3 *handle, int lastError) {
    for (const int error : {lastError, handle ? sqlite3_system_errno(handle) : 0}) {
        // SQLite looks for a journal that it couldn't create: ENOENT hides the reason.
        if (error != 0 && error != ENOENT)
            return u" (%1)"_s.arg(qt_error_string(error));
    }
    return {};
}

QString reasonOf(sqlite3 *handle, int code) {
    const int lastError = errno;
    if (code == SQLITE_FULL && hasUsedUpNumbers(handle))
        return u"it has no numbers left for more records"_s;
    for (const Reason &reason : reasons) {
        if (reason.code != code && reason.code != (code & 0xff))
            continue;
        const QString text = QLatin1String(reason.text);
        const int kind = code & 0xff;
        return kind == SQLITE_IOERR || kind == SQLITE_CANTOPEN
                   ? text + systemReason(handle, lastError)
                   : text;
    }
    return QString::fromUtf8(handle ? sqlite3_errmsg(handle) : sqlite3_errstr(code));
}

Failure failureBecause(int code, const QString &path, const QString &reason,
                       const char *verb = "used") {
    return {code, u"The file \"%1\" can't be %2: %3."_s.arg(QDir::toNativeSeparators(path),
                                                            QLatin1String(verb), reason)};
}

Failure failureOf(sqlite3 *handle, int code, const QString &path) {
    return failureBecause(code, path, reasonOf(handle, code));
}

void refuseUnlessOrdinaryFile(const QString &path) {
    const int error =
        QFileInfo::exists(path) ? desktop::ordinaryFileError(path, maxPathBytes()) : ENOENT;
    const char *reason = error == ENOENT         ? "there is no such file"
                         : error == ENAMETOOLONG ? "its path is longer than SQLite allows"
                         : error == EISDIR       ? "it is a folder"
                                                 : "it isn't an ordinary file";
    if (error != 0)
        throw failureBecause(SQLITE_CANTOPEN, path, QLatin1String(reason), "opened");
}

/// Nothing that a file declares may run or reach outside the file. Its longest text is the parser's
/// longest attribute; a record has fifteen columns of text.
void limitTrust(sqlite3 *handle) {
    for (const int off :
         {SQLITE_DBCONFIG_ENABLE_TRIGGER, SQLITE_DBCONFIG_ENABLE_VIEW,
          SQLITE_DBCONFIG_TRUSTED_SCHEMA, SQLITE_DBCONFIG_DQS_DML, SQLITE_DBCONFIG_DQS_DDL})
        sqlite3_db_config(handle, off, 0, nullptr);
    sqlite3_db_config(handle, SQLITE_DBCONFIG_DEFENSIVE, 1, nullptr);
    sqlite3_limit(handle, SQLITE_LIMIT_LENGTH, 16 * maxTextBytes);
    sqlite3_limit(handle, SQLITE_LIMIT_SQL_LENGTH, 1'000'000);
    sqlite3_limit(handle, SQLITE_LIMIT_ATTACHED, 1); // which a clean needs
}

/// The waits of all connections together.
thread_local struct {
    long command = 0;
    qint64 milliseconds = 0;
} waits;

bool isBlank(std::string_view sql) {
    return sql.find_first_not_of(" \t\r\n;") == std::string_view::npos;
}

} // namespace

int maxPathBytes() {
    return sqlite3_vfs_find(nullptr)->mxPathname - 8; // "-journal"
}

/// SQLite's own handler sleeps longer each time and then loses every race against a busy writer.
bool BusyTimeout::wait(int attempt) {
    const long command = CommandScope::running();
    if (command == 0 || waits.command != command)
        waits = {command, attempt == 0 ? 0 : waits.milliseconds};
    if (attempt == 0) {
        m_timer.start();
        m_counted = 0;
    }
    const qint64 elapsed = m_timer.elapsed();
    waits.milliseconds += elapsed - std::exchange(m_counted, elapsed);
    const bool gaveUpBefore = command != 0 && m_gaveUpIn == command;
    if (gaveUpBefore || elapsed >= services().lockWait ||
        waits.milliseconds >= services().lockWaitOfCommand) {
        m_gaveUpIn = command;
        return false;
    }
    QThread::msleep(static_cast<unsigned long>(std::min(attempt + 1, 2)));
    return true;
}

void Statement::bind(int parameter, std::string_view text) {
    // A null pointer would bind NULL, which no column accepts.
    check(sqlite3_bind_text64(handle(), parameter, text.empty() ? "" : text.data(), text.size(),
                              SQLITE_TRANSIENT, SQLITE_UTF8));
}

void Statement::bind(int parameter, const QString &text) {
    const QByteArray utf8 = storedBytes(text);
    bind(parameter, std::string_view(utf8.constData(), static_cast<std::size_t>(utf8.size())));
}

Result Statement::run(Result expected) {
    errno = 0; // for the text of a failure
    const int code = sqlite3_step(handle());
    if (code == SQLITE_ROW || code == SQLITE_DONE)
        return Result(code);
    const Failure failure = m_connection->failure(code);
    reset(); // so that the caller can bind and try again
    if (primary(code) != expected)
        throw failure;
    return expected;
}

void Statement::reset() {
    // Its result repeats the failure of the last step.
    sqlite3_reset(handle());
    if (m_connection)
        m_connection->workLimit().beginRun();
}

std::string_view Statement::utf8(int column) const {
    const auto *text = reinterpret_cast<const char *>(sqlite3_column_text(handle(), column));
    if (!text && sqlite3_errcode(m_connection->handle()) == SQLITE_NOMEM)
        m_connection->fail(SQLITE_NOMEM);
    if (!text)
        return {};
    const int size = sqlite3_column_bytes(handle(), column);
    m_connection->countText(size);
    return {text, static_cast<std::size_t>(size)};
}

QString Statement::text(int column) const {
    return textOf(utf8(column));
}

void Statement::check(int code) const {
    if (code != SQLITE_OK)
        m_connection->fail(code);
}

Connection::Connection() = default;

Connection::~Connection() = default;

void Connection::open(const QString &path) {
    close();
    refuseUnlessOrdinaryFile(path);
    // Absolute, so that a name isn't taken for a URI ("file:x?mode=ro").
    const QByteArray name = QFileInfo(path).absoluteFilePath().toUtf8();
    auto files = std::make_unique<FileAccess>();
    sqlite3 *opened = nullptr;
    errno = 0;
    const int code = sqlite3_open_v2(
        name.constData(), &opened,
        SQLITE_OPEN_READWRITE | SQLITE_OPEN_NOMUTEX | SQLITE_OPEN_EXRESCODE, files->name());
    std::unique_ptr<sqlite3, Close> handle(opened);
    if (code != SQLITE_OK)
        throw failureOf(opened, code, path);
    // SQLite falls back to read-only silently.
    if (sqlite3_db_readonly(opened, "main") != 0)
        throw failureOf(nullptr, SQLITE_READONLY, path);
    limitTrust(opened);
    registerRecordScan(opened);
    sqlite3_busy_handler(opened, waitForLock, this);
    sqlite3_progress_handler(opened, workStep, countWork, this);
    m_handle = std::move(handle);
    m_files = std::move(files);
    m_workLimit.setFiles(m_files.get());
    m_path = path;
}

void Connection::close() noexcept {
    m_handle.reset();
    m_workLimit.setFiles(nullptr);
    m_files.reset();
    m_path.clear();
}

Statement Connection::prepareFirst(std::string_view &sql, Result expected) const {
    m_workLimit.beginStatement();
    errno = 0;
    sqlite3_stmt *compiled = nullptr;
    const char *rest = nullptr;
    const int code =
        sqlite3_prepare_v2(handle(), sql.data(), static_cast<int>(sql.size()), &compiled, &rest);
    if (code == SQLITE_OK)
        sql.remove_prefix(static_cast<std::size_t>(rest - sql.data()));
    else if (Result(code) != expected)
        fail(code);
    Statement statement;
    statement.m_connection = this;
    statement.m_statement.reset(compiled);
    return statement;
}

void Connection::execute(std::string_view sql) {
    while (!isBlank(sql)) {
        Statement statement = prepareFirst(sql);
        while (statement && statement.step()) {
        }
        if (!statement && !isBlank(sql) && sql.front() == '\0')
            throw failureOf(nullptr, SQLITE_MISUSE, m_path);
    }
}

Statement Connection::prepare(std::string_view sql) const {
    Statement statement = prepareFirst(sql);
    if (!statement || !isBlank(sql))
        throw failureOf(nullptr, SQLITE_MISUSE, m_path);
    return statement;
}

bool Connection::compiles(std::string_view sql) const {
    return bool(prepareFirst(sql, Result::Error));
}

std::optional<DeclaredColumn> Connection::column(const char *table, const char *name) const {
    const char *type = nullptr;
    const char *collation = nullptr;
    int isPrimaryKey = 0;
    const int code = sqlite3_table_column_metadata(handle(), "main", table, name, &type, &collation,
                                                   nullptr, &isPrimaryKey, nullptr);
    if (code == SQLITE_ERROR)
        return std::nullopt;
    if (code != SQLITE_OK)
        fail(code);
    return DeclaredColumn{QString::fromUtf8(type), sqlite3_stricmp(collation, "BINARY") == 0,
                          isPrimaryKey != 0};
}

qint64 Connection::number(std::string_view sql) const {
    Statement statement = prepare(sql);
    return statement.step() ? statement.int64(0) : 0;
}

bool Connection::hasMoved() const {
    int moved = 0;
    sqlite3_file_control(handle(), "main", SQLITE_FCNTL_HAS_MOVED, &moved);
    return moved != 0;
}

Failure Connection::failure(int code) const {
    const char *refusal = m_files ? m_files->takeRefusal() : nullptr;
    return refusal ? failureBecause(code, m_path, QLatin1String(refusal))
                   : failureOf(handle(), code, m_path);
}

void Connection::fail(int code) const {
    throw failure(code);
}

int Connection::waitForLock(void *self, int attempt) {
    return static_cast<Connection *>(self)->m_busyTimeout.wait(attempt);
}

void Connection::countText(int bytes) const {
    if (bytes > maxTextBytes)
        fail(SQLITE_TOOBIG);
    if (!m_workLimit.addText(bytes))
        fail(SQLITE_CORRUPT);
}

/// Nonzero ends the statement.
int Connection::countWork(void *self) {
    return !static_cast<Connection *>(self)->m_workLimit.addSteps(workStep);
}

Transaction::Transaction(Connection &connection, std::string_view begin)
    : m_connection(connection) {
    m_connection.execute(begin);
}

Transaction::~Transaction() {
    // A failure such as a full disk may have ended it already.
    if (m_open && !sqlite3_get_autocommit(m_connection.handle()))
        sqlite3_exec(m_connection.handle(), "ROLLBACK", nullptr, nullptr, nullptr);
}

void Transaction::commit() {
    m_connection.execute("COMMIT");
    m_connection.resetBusyTimeout();
    m_open = false;
}

ReadTransaction::ReadTransaction(Connection &connection) {
    if (sqlite3_get_autocommit(connection.handle()))
        m_transaction.emplace(connection, "BEGIN");
}

} // namespace veltrona::sqlite
