#include "core/database/tableSchema.h"

#include "core/database/dayTable.h"

#include <QRegularExpression>
#include <QStringList>

namespace veltrona {

namespace {

using sqlite::Connection;
using sqlite::Statement;

constexpr auto runs = "its table tblGoogleDays holds expressions, which a project has none of (a "
                      "CHECK, a generated column, a computed default or an index over an "
                      "expression or a part of the table)";
constexpr auto refuses = "its table tblGoogleDays has another unique index than a project, and "
                         "records would be lost";

/// A number, a text, a blob or a word such as NULL or CURRENT_DATE, or no default at all.
bool isPlainDefault(const QString &text) {
    static const QRegularExpression plain(QRegularExpression::anchoredPattern(
        QStringLiteral("[+-]?[0-9.]+([eE][+-]?[0-9]+)?|[+-]?0[xX][0-9a-fA-F]+|[xX]?'([^']|'')*'|"
                       "\"[^\"]*\"|[A-Za-z_]*")));
    return plain.match(text.trimmed()).hasMatch();
}

/// The length of the program that the engine makes of an insert.
int insertSteps(const Connection &connection) {
    Statement program = connection.prepare("EXPLAIN " + dayInsertStatement());
    int steps = 0;
    while (program.step())
        ++steps;
    return steps;
}

bool hasChecks(Connection &connection) {
    connection.execute("PRAGMA ignore_check_constraints = OFF");
    const int steps = insertSteps(connection);
    connection.execute("PRAGMA ignore_check_constraints = ON");
    return steps != insertSteps(connection);
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

struct IndexShape {
    bool hasExpression = false;
    bool isRecordKey = false;
};

IndexShape shapeOf(const Connection &connection, QString name) {
    enum { ColumnId = 1, Name = 2, Collation = 4, IsKey = 5 };
    static const QStringList recordKey{"adgroup",    "campaign", "creativeid",
                                       "googledate", "keyword",  "kwtype"};
    constexpr int expression = -2;
    const QString sql = QStringLiteral("PRAGMA main.index_xinfo(\"%1\")")
                            .arg(name.replace(u'"', QLatin1String("\"\"")));
    Statement columns = connection.prepare(sql.toStdString());
    IndexShape shape;
    QStringList keys;
    while (columns.step()) {
        if (columns.int64(IsKey) == 0)
            continue;
        shape.hasExpression = shape.hasExpression || columns.int64(ColumnId) == expression;
        const bool exact = columns.text(Collation) == QLatin1String("BINARY");
        keys += exact ? columns.text(Name).toLower() : QString();
    }
    keys.sort();
    shape.isRecordKey = keys == recordKey;
    return shape;
}

} // namespace

const char *schemaFault(Connection &connection) {
    if (hasComputedColumns(connection) || hasChecks(connection))
        return runs;
    enum { Name = 1, IsUnique = 2, IsPartial = 4 };
    Statement indexes = connection.prepare("PRAGMA main.index_list(tblGoogleDays)");
    while (indexes.step()) {
        const IndexShape shape = shapeOf(connection, indexes.text(Name));
        if (shape.hasExpression || indexes.int64(IsPartial) != 0)
            return runs;
        if (indexes.int64(IsUnique) != 0 && !shape.isRecordKey)
            return refuses;
    }
    return nullptr;
}

} // namespace veltrona
