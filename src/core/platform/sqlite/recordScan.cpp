#include "core/platform/sqlite/recordScan.h"

#include <QScopeGuard>

#include <exception>
#include <sqlite3.h>
#include <string>
#include <type_traits>
#include <utility>

namespace veltrona::sqlite {

static_assert(sizeof(RecordValue) == sizeof(sqlite3_value *) &&
                  std::is_standard_layout_v<RecordValue>,
              "SQLite's array of arguments is passed to visitors as it is");

namespace {

constexpr const char *pointerType = "veltrona_scan";

struct Scan {
    const Connection &connection;
    const RecordVisitor &visitor;
    std::exception_ptr exception; // none may pass through SQLite
};

/// The scan whose record is being visited in this thread.
thread_local const Scan *visiting = nullptr;

/// The first argument points to the Scan; the others are the record's.
void visitRecord(sqlite3_context *context, int count, sqlite3_value **arguments) {
    auto *scan =
        static_cast<Scan *>(count > 0 ? sqlite3_value_pointer(arguments[0], pointerType) : nullptr);
    if (!scan) {
        sqlite3_result_error_code(context, SQLITE_MISUSE);
        return;
    }
    const Scan *const outer = std::exchange(visiting, scan);
    const auto restore = qScopeGuard([outer] { visiting = outer; });
    try {
        if (scan->visitor({reinterpret_cast<const RecordValue *>(arguments + 1),
                           static_cast<std::size_t>(count - 1)}))
            return;
    } catch (...) {
        scan->exception = std::current_exception();
    }
    sqlite3_result_error_code(context, SQLITE_ABORT);
}

} // namespace

void registerRecordScan(sqlite3 *handle) {
    sqlite3_create_function_v2(
        handle, "veltrona_visit", -1, SQLITE_UTF8 | SQLITE_DIRECTONLY, nullptr, nullptr,
        visitRecord, [](sqlite3_context *) {}, nullptr);
}

std::string_view RecordValue::utf8() const {
    const auto *text = reinterpret_cast<const char *>(sqlite3_value_text(m_value));
    if (!text)
        return {};
    const int size = sqlite3_value_bytes(m_value);
    visiting->connection.countText(size);
    return {text, static_cast<std::size_t>(size)};
}

bool scanRecords(const Connection &connection, std::string_view columns, std::string_view rest,
                 const std::vector<QString> &bindings, const RecordVisitor &visitor) {
    std::string sql = "SELECT veltrona_visit(?1, ";
    sql.append(columns).append(") ").append(rest);
    Scan scan{connection, visitor, nullptr};
    Statement statement = connection.prepare(sql);
    sqlite3_bind_pointer(statement.handle(), 1, &scan, pointerType, nullptr);
    for (std::size_t i = 0; i < bindings.size(); ++i)
        statement.bind(static_cast<int>(i) + 2, bindings[i]);
    const Result result = statement.run(Result::Abort);
    if (scan.exception)
        std::rethrow_exception(scan.exception);
    return result != Result::Abort;
}

} // namespace veltrona::sqlite
