#include "core/base/text.h"
#include "core/database/dayTable.h"
#include "core/database/projectFile.h"
#include "core/design/product.h"
#include "core/platform/sqlite/fileHeader.h"

#include <QFileInfo>
#include <QRegularExpression>
#include <QStringList>

namespace veltrona {

namespace {

using sqlite::Connection;
using sqlite::Statement;

/// In KiB. Keeps the pages of one batch of an import in memory: SQLite would otherwise write, and
/// lock out every reader, in the middle of the batch.
constexpr int cacheSize = 64000;

[[noreturn]] void refuse(ProjectFault number, const QString &path, const QString &reason) {
    throw Failure(number, u"The file \"%1\" can't be opened as a project: %2."_s.arg(
                              QDir::toNativeSeparators(path), reason));
}

/// A version of the program that raises projectSchemaVersion converts the older files here, one
/// step for each schema in between. So far no older schema was ever in use.
void verifyIdentity(const Connection &connection) {
    const auto refuseAs = [&](ProjectFault number, const QString &reason) {
        refuse(number, connection.path(), reason + productName);
    };
    if (connection.number("PRAGMA application_id") != projectApplicationId)
        refuseAs(noProject, u"it is a database, but not one of "_s);
    const qint64 version = connection.number("PRAGMA user_version");
    if (version > projectSchemaVersion)
        refuseAs(newerProject, u"it was made by a newer version of "_s);
    if (version < projectSchemaVersion)
        refuseAs(olderProject, u"it was made by an older version of "_s);
}

constexpr auto runs = "its table tblGoogleDays holds expressions, which a project has none of (a "
                      "CHECK, a generated column, a computed default or an index over an "
                      "expression or a part of the table)";

/// A number, a text, a blob, a keyword such as NULL or CURRENT_DATE, or no default.
bool isPlainDefault(const QString &text) {
    static const QRegularExpression plain(QRegularExpression::anchoredPattern(
        u"[+-]?[0-9.]+([eE][+-]?[0-9]+)?|[+-]?0[xX][0-9a-fA-F]+|[xX]?'([^']|'')*'|"
        "\"[^\"]*\"|[A-Za-z_]*"_s));
    return plain.match(text.trimmed()).hasMatch();
}

/// CHECKs lengthen the byte code of an insert. From here on the connection ignores them.
bool hasChecks(Connection &connection) {
    const auto insertSteps = [&](std::string_view pragma) {
        connection.execute(pragma);
        Statement program = connection.prepare("EXPLAIN " + dayInsertStatement());
        int steps = 0;
        while (program.step())
            ++steps;
        return steps;
    };
    const int steps = insertSteps("PRAGMA ignore_check_constraints = OFF");
    return steps != insertSteps("PRAGMA ignore_check_constraints = ON");
}

bool hasComputedColumns(const Connection &connection) {
    enum { DefaultValue = 4, Hidden = 6 };
    Statement columns = connection.prepare("PRAGMA main.table_xinfo(tblGoogleDays)");
    while (columns.step()) {
        if (columns.int64(Hidden) != 0 || !isPlainDefault(columns.text(DefaultValue)))
            return true;
    }
    return false;
}

/// What is wrong with an index, as the end of a sentence; null if nothing is.
const char *indexFault(const Connection &connection, QString name, bool isUnique) {
    enum { ColumnId = 1, Name = 2, Collation = 4, IsKey = 5 };
    static const QStringList recordKey{"adgroup",    "campaign", "creativeid",
                                       "googledate", "keyword",  "kwtype"};
    constexpr int expression = -2;
    const QString sql = u"PRAGMA main.index_xinfo(\"%1\")"_s.arg(name.replace(u'"', "\"\""_L1));
    Statement columns = connection.prepare(sql.toStdString());
    QStringList keys;
    while (columns.step()) {
        if (columns.int64(IsKey) == 0)
            continue;
        if (columns.int64(ColumnId) == expression)
            return runs;
        const bool exact = isSameName(columns.utf8(Collation), "BINARY");
        keys += exact ? columns.text(Name).toLower() : QString();
    }
    keys.sort();
    return isUnique && keys != recordKey ? "its table tblGoogleDays has another unique index than "
                                           "a project, and records would be lost"
                                         : nullptr;
}

constexpr auto textTypes = "(?!.*INT).*(CHAR|CLOB|TEXT).*";
constexpr auto wholeTypes = ".*INT.*|(?!.*(CHAR|CLOB|TEXT|BLOB|REAL|FLOA|DOUB)).+";

/// The columns that identify records or are looked up, with the declared types that give them the
/// affinity they need: as NUMERIC, "7" and "007" would be one name.
constexpr struct {
    const char *name;
    const char *types;
    bool isPrimaryKey = false;
} comparedColumns[] = {
    {"Campaign", textTypes},    {"Adgroup", textTypes},
    {"AdwordsTyp", textTypes},  {"KeyWord", textTypes},
    {"kwType", textTypes},      {"GoogleDate", textTypes},
    {"CreativeId", wholeTypes}, {"GoogleDayId", "INTEGER", true},
};

/// The first of them that takes different records for one, or can't number them; null if none.
const char *foreignColumn(const Connection &connection) {
    for (const auto &[name, types, isPrimaryKey] : comparedColumns) {
        const QRegularExpression type(QRegularExpression::anchoredPattern(QLatin1String(types)),
                                      QRegularExpression::CaseInsensitiveOption |
                                          QRegularExpression::DotMatchesEverythingOption);
        const auto column = connection.column("tblGoogleDays", name);
        if (!column || !column->isBinary || column->isPrimaryKey != isPrimaryKey ||
            !type.match(column->type).hasMatch())
            return name;
    }
    return nullptr;
}

/// What is wrong with the table, as the end of a sentence; null if nothing is. More columns and
/// indexes are welcome.
const char *tableFault(Connection &connection) {
    // A view or a virtual table has no root page.
    constexpr auto rootPage = "SELECT rootpage FROM sqlite_master WHERE type = 'table' AND "
                              "name = 'tblGoogleDays' COLLATE NOCASE";
    constexpr auto otherTable = "its table tblGoogleDays isn't the one of a project";
    if (!connection.compiles(rootPage))
        return otherTable;
    if (connection.number(rootPage) == 0)
        return "its table tblGoogleDays is missing";
    // Names each column and the index of the six key columns.
    if (!connection.compiles(dayInsertStatement()))
        return otherTable;
    if (hasComputedColumns(connection) || hasChecks(connection))
        return runs;
    enum { Name = 1, IsUnique = 2, IsPartial = 4 };
    Statement indexes = connection.prepare("PRAGMA main.index_list(tblGoogleDays)");
    while (indexes.step()) {
        if (indexes.int64(IsPartial) != 0)
            return runs;
        const bool isUnique = indexes.int64(IsUnique) != 0;
        if (const char *fault = indexFault(connection, indexes.text(Name), isUnique))
            return fault;
    }
    return nullptr;
}

void verifyTable(Connection &connection) {
    if (const char *fault = tableFault(connection))
        refuse(damagedProject, connection.path(), QLatin1String(fault));
    if (const char *column = foreignColumn(connection))
        refuse(damagedProject, connection.path(),
               u"its table tblGoogleDays doesn't have the column %1 as a project has it, and "
               "records would be lost or mixed up"_s.arg(QLatin1String(column)));
    // Reads from the table and from both indexes.
    connection.number("SELECT (SELECT 1 FROM tblGoogleDays NOT INDEXED),"
                      " (SELECT min(GoogleDate) FROM tblGoogleDays),"
                      " (SELECT min(Campaign) FROM tblGoogleDays)");
}

void configure(Connection &connection) {
    // A single file: copied or mailed while it is open, it is complete.
    connection.execute("PRAGMA journal_mode = DELETE");
    connection.execute("PRAGMA synchronous = FULL");
    // Overwriting each page with zeros makes a clean of a large project take seconds.
    connection.execute("PRAGMA secure_delete = OFF");
    connection.execute("PRAGMA cache_size = -" + std::to_string(cacheSize));
}

/// Inserts a record with an empty date, which no import makes; rolled back by the caller.
bool acceptsRecord(const Connection &connection) {
    Statement insert = connection.prepare(dayInsertStatement());
    int parameter = 0;
    for (const DayColumn &column : dayColumns) {
        ++parameter;
        if (column.kind == ColumnKind::Number)
            insert.bind(parameter, 0.5);
        else
            insert.bind(parameter, std::string_view());
    }
    return insert.run(sqlite::Result::Constraint) == sqlite::Result::Done &&
           connection.changes() == 1;
}

/// Writes a page and a record and rolls back: only that shows that the journal can be created.
void verifyWritable(Connection &connection) {
    const sqlite::Transaction transaction(connection);
    connection.execute("PRAGMA user_version = " + std::to_string(projectSchemaVersion));
    if (!acceptsRecord(connection))
        refuse(damagedProject, connection.path(),
               u"its table tblGoogleDays has columns or conditions that would refuse every new "
               "record"_s);
}

} // namespace

std::unique_ptr<Connection> openProject(const QString &path) {
    auto connection = std::make_unique<Connection>();
    connection->open(path);
    const qint64 size = QFileInfo(path).size();
    if (size == 0)
        refuse(noProject, path, u"it is empty"_s);
    if (size < sqlite::FileHeader::minPageSize) // SQLite takes it for an empty database
        refuse(noProject, path, u"it is too short to be one"_s);
    verifyIdentity(*connection);
    verifyTable(*connection);
    configure(*connection);
    verifyWritable(*connection);
    return connection;
}

} // namespace veltrona
