#include "core/base/product.h"
#include "core/database/dayTable.h"
#include "core/database/projectFile.h"
#include "core/database/tableSchema.h"

#include <QFileInfo>

namespace veltrona {

namespace {

using sqlite::Connection;

// SQLite's numbers for a statement that doesn't fit the schema and for a record that it refuses.
constexpr int sqlError = 1;
constexpr int brokenConstraint = 19;

constexpr qint64 smallestDatabase = 512; // bytes: one page

/// In KiB. Keeps the pages of one batch of an import in memory: the engine would otherwise write,
/// and lock out every reader, in the middle of the batch.
constexpr int cacheSize = 64000;

[[noreturn]] void refuse(FailureNumber number, const QString &path, const QString &reason) {
    throw Failure(number, QStringLiteral("The file \"%1\" can't be opened as a project: %2.")
                              .arg(QDir::toNativeSeparators(path), reason));
}

qint64 number(const Connection &connection, std::string_view sql) {
    sqlite::Statement statement = connection.prepare(sql);
    return statement.step() ? statement.int64(0) : 0;
}

void proveIdentity(const Connection &connection) {
    if (number(connection, "PRAGMA application_id") != projectApplicationId)
        refuse(noProject, connection.path(),
               QStringLiteral("it is a database, but not one of ") + productName);
    const qint64 version = number(connection, "PRAGMA user_version");
    if (version > projectSchemaVersion)
        refuse(newerProject, connection.path(),
               QStringLiteral("it was made by a newer version of ") + productName);
    if (version < 1)
        refuse(damagedProject, connection.path(),
               QStringLiteral("it is damaged, its version is missing"));
}

void proveTable(Connection &connection) {
    try {
        // A real table has pages of its own, which a view or a virtual table hasn't.
        if (number(connection, "SELECT rootpage FROM sqlite_master WHERE type = 'table' AND "
                               "name = 'tblGoogleDays' COLLATE NOCASE") == 0)
            refuse(damagedProject, connection.path(),
                   QStringLiteral("its table tblGoogleDays is missing"));
        // Names each column and the index of the six key columns.
        connection.prepare(dayInsertStatement());
        if (const char *fault = schemaFault(connection))
            refuse(damagedProject, connection.path(), QLatin1String(fault));
        // Reads from the table and from both indexes.
        number(connection, "SELECT (SELECT 1 FROM tblGoogleDays NOT INDEXED),"
                           " (SELECT min(GoogleDate) FROM tblGoogleDays),"
                           " (SELECT min(Campaign) FROM tblGoogleDays)");
    } catch (const Failure &failure) {
        if (failure.number() != sqlError)
            throw;
        refuse(damagedProject, connection.path(),
               QStringLiteral("its table tblGoogleDays isn't the one of a project"));
    }
}

void configure(Connection &connection) {
    // One file: whoever copies or mails a project while it is open gets all of it.
    connection.execute("PRAGMA journal_mode = DELETE");
    connection.execute("PRAGMA synchronous = FULL");
    // Overwriting each page with zeros makes a clean of a large project take seconds.
    connection.execute("PRAGMA secure_delete = OFF");
    connection.execute("PRAGMA cache_size = -" + std::to_string(cacheSize));
}

/// Whether the table takes a record that no report can hold, since it has no date.
bool takesRecord(const Connection &connection) {
    sqlite::Statement insert = connection.prepare(dayInsertStatement());
    int parameter = 0;
    for (const DayColumn &column : dayColumns) {
        ++parameter;
        if (column.kind == ColumnKind::Number)
            insert.bind(parameter, 0.5);
        else
            insert.bind(parameter, std::string_view());
    }
    try {
        insert.step();
    } catch (const Failure &failure) {
        if ((failure.number() & 0xff) != brokenConstraint)
            throw;
        return false;
    }
    return connection.changes() == 1;
}

/// Writes a page and a record, and takes both back: only that shows that the journal can be made,
/// too.
void proveWritable(Connection &connection) {
    const sqlite::Transaction transaction(connection);
    connection.execute("PRAGMA user_version = " + std::to_string(projectSchemaVersion));
    if (!takesRecord(connection))
        refuse(damagedProject, connection.path(),
               QStringLiteral("its table tblGoogleDays has columns or conditions that would refuse "
                              "every new record"));
}

} // namespace

std::unique_ptr<Connection> openProject(const QString &path) {
    auto connection = std::make_unique<Connection>();
    connection->open(path);
    const qint64 size = QFileInfo(path).size();
    if (size == 0)
        refuse(noProject, path, QStringLiteral("it is empty"));
    if (size < smallestDatabase) // the engine takes it for an empty database
        refuse(noProject, path, QStringLiteral("it is too short to be one"));
    proveIdentity(*connection);
    proveTable(*connection);
    configure(*connection);
    proveWritable(*connection);
    return connection;
}

} // namespace veltrona
