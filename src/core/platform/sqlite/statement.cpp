#include "core/platform/sqlite/connection.h"

#include "core/base/storedText.h"

#include <cerrno>
#include <sqlite3.h>

namespace veltrona::sqlite {

void Statement::Finalize::operator()(sqlite3_stmt *statement) const {
    sqlite3_finalize(statement);
}

void Statement::bind(int parameter, qint64 value) {
    check(sqlite3_bind_int64(handle(), parameter, value));
}

void Statement::bind(int parameter, double value) {
    check(sqlite3_bind_double(handle(), parameter, value));
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
        m_connection->beginWork();
}

ValueType Statement::type(int column) const {
    return static_cast<ValueType>(sqlite3_column_type(handle(), column));
}

qint64 Statement::int64(int column) const {
    return sqlite3_column_int64(handle(), column);
}

double Statement::real(int column) const {
    return sqlite3_column_double(handle(), column);
}

std::string_view Statement::utf8(int column) const {
    const auto *text = reinterpret_cast<const char *>(sqlite3_column_text(handle(), column));
    if (!text && sqlite3_errcode(m_connection->handle()) == SQLITE_NOMEM)
        m_connection->fail(SQLITE_NOMEM);
    if (!text)
        return {};
    const int size = sqlite3_column_bytes(handle(), column);
    if (size > maxTextBytes)
        m_connection->fail(SQLITE_TOOBIG);
    return {text, static_cast<std::size_t>(size)};
}

QString Statement::text(int column) const {
    return textOf(utf8(column));
}

void Statement::check(int code) const {
    if (code != SQLITE_OK)
        m_connection->fail(code);
}

} // namespace veltrona::sqlite
