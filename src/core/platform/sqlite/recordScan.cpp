#include "core/platform/sqlite/recordScan.h"

#include "core/base/storedText.h"

#include <exception>
#include <memory>
#include <sqlite3.h>
#include <string>
#include <type_traits>

namespace veltrona::sqlite {

static_assert(sizeof(RecordValue) == sizeof(sqlite3_value *) &&
                  std::is_standard_layout_v<RecordValue>,
              "the engine's array of arguments is handed on as it stands");

namespace {

constexpr const char *pointerType = "veltrona_scan";

struct TooLong {};

struct Scan {
    const RecordVisitor &visitor;
    std::exception_ptr exception; // no exception may pass through the engine
};

/// The first argument points to the Scan; the others are the record's.
void visitRecord(sqlite3_context *context, int count, sqlite3_value **arguments) {
    auto *scan =
        static_cast<Scan *>(count > 0 ? sqlite3_value_pointer(arguments[0], pointerType) : nullptr);
    if (!scan) {
        sqlite3_result_error_code(context, SQLITE_MISUSE);
        return;
    }
    if (scan->exception)
        return;
    try {
        scan->visitor({reinterpret_cast<const RecordValue *>(arguments + 1),
                       static_cast<std::size_t>(count - 1)});
    } catch (const TooLong &) {
        sqlite3_result_error_toobig(context);
    } catch (...) {
        scan->exception = std::current_exception();
        sqlite3_result_error_code(context, SQLITE_ABORT);
    }
}

void endScan(sqlite3_context *context) {
    sqlite3_result_null(context);
}

using StatementPointer = std::unique_ptr<sqlite3_stmt, decltype(&sqlite3_finalize)>;

int prepareOn(sqlite3 *handle, const std::string &sql, StatementPointer &statement) {
    sqlite3_stmt *prepared = nullptr;
    const int code =
        sqlite3_prepare_v2(handle, sql.data(), static_cast<int>(sql.size()), &prepared, nullptr);
    statement.reset(prepared);
    return code;
}

/// The first scan of a connection makes the function known. Doing so each time would fail while
/// another scan runs, and make every prepared statement stale.
StatementPointer prepareScan(const Connection &connection, const std::string &sql) {
    sqlite3 *handle = connection.handle();
    connection.beginWork();
    StatementPointer statement(nullptr, &sqlite3_finalize);
    int code = prepareOn(handle, sql, statement);
    if (code == SQLITE_ERROR) {
        code = sqlite3_create_function_v2(handle, "veltrona_visit", -1,
                                          SQLITE_UTF8 | SQLITE_DIRECTONLY, nullptr, nullptr,
                                          visitRecord, endScan, nullptr);
        if (code == SQLITE_OK)
            code = prepareOn(handle, sql, statement);
    }
    if (code != SQLITE_OK)
        connection.fail(code);
    return statement;
}

} // namespace

ValueType RecordValue::type() const {
    return static_cast<ValueType>(sqlite3_value_type(m_value));
}

qint64 RecordValue::int64() const {
    return sqlite3_value_int64(m_value);
}

double RecordValue::real() const {
    return sqlite3_value_double(m_value);
}

std::string_view RecordValue::utf8() const {
    const auto *text = reinterpret_cast<const char *>(sqlite3_value_text(m_value));
    if (!text)
        return {};
    const int size = sqlite3_value_bytes(m_value);
    if (size > longestText)
        throw TooLong();
    return {text, static_cast<std::size_t>(size)};
}

void scanRecords(const Connection &connection, std::string_view columns, std::string_view rest,
                 const std::vector<QString> &bindings, const RecordVisitor &visitor) {
    std::string sql = "SELECT veltrona_visit(?1, ";
    sql.append(columns).append(") ").append(rest);
    Scan scan{visitor, nullptr};
    const StatementPointer statement = prepareScan(connection, sql);

    int code = sqlite3_bind_pointer(statement.get(), 1, &scan, pointerType, nullptr);
    for (std::size_t i = 0; i < bindings.size() && code == SQLITE_OK; ++i) {
        const QByteArray text = storedBytes(bindings[i]);
        code = sqlite3_bind_text64(statement.get(), static_cast<int>(i) + 2, text.constData(),
                                   static_cast<sqlite3_uint64>(text.size()), SQLITE_TRANSIENT,
                                   SQLITE_UTF8);
    }
    if (code == SQLITE_OK)
        code = sqlite3_step(statement.get());
    if (scan.exception)
        std::rethrow_exception(scan.exception);
    if (code != SQLITE_ROW && code != SQLITE_DONE)
        connection.fail(code);
}

} // namespace veltrona::sqlite
