#include "core/analysis/nodeRecords.h"

namespace veltrona {

namespace {

/// A record costs several times as much by way of an index, so that an index pays for a small
/// share of the table only: one in so many.
constexpr qint64 smallShare = 8;

/// A plus sign in front of a column keeps the indexes out that it leads.
void add(NodeRecords &records, bool byIndex, const std::string &column, const char *comparison,
         const QString &value) {
    records.sql += (byIndex ? " AND " : " AND +") + column + comparison;
    records.bindings.push_back(value);
}

NodeRecords narrowed(const NodeTag &tag, bool byName, const QString &firstDate,
                     const QString &lastDate, bool byDate) {
    NodeRecords records{"FROM tblGoogleDays WHERE 1", {}};
    for (const NodeCondition &condition : tag.conditions)
        add(records, byName, condition.column.toStdString(), " = ?", condition.value);
    if (!firstDate.isNull()) {
        add(records, byDate, "GoogleDate", " >= ?", firstDate);
        add(records, byDate, "GoogleDate", " <= ?", lastDate);
    }
    return records;
}

/// At most `limit`; an index alone answers this.
qint64 countOf(const sqlite::Connection &connection, const NodeRecords &records, qint64 limit) {
    sqlite::Statement statement =
        connection.prepare("SELECT count(*) FROM (SELECT 1 " + records.sql + " LIMIT ?)");
    int parameter = 0;
    for (const QString &binding : records.bindings)
        statement.bind(++parameter, binding);
    statement.bind(++parameter, limit);
    statement.step();
    return statement.int64(0);
}

qint64 tooManyFor(const sqlite::Connection &connection) {
    sqlite::Statement statement = connection.prepare("SELECT max(GoogleDayId) FROM tblGoogleDays");
    statement.step();
    return statement.int64(0) / smallShare + 1;
}

} // namespace

NodeRecords nodeRecords(const sqlite::Connection &connection, const NodeTag &tag,
                        const QString &firstDate, const QString &lastDate) {
    const qint64 tooMany = tooManyFor(connection);
    NodeTag indexed = tag;
    std::erase_if(indexed.conditions,
                  [](const auto &each) { return each.column == u"adWordsTyp"; });
    const qint64 named =
        indexed.conditions.empty()
            ? tooMany
            : countOf(connection, narrowed(indexed, true, QString(), QString(), false), tooMany);
    const qint64 dated =
        countOf(connection, narrowed(NodeTag(), false, firstDate, lastDate, true), named);
    const bool byDate = dated < named;
    const bool byName = !byDate && named < tooMany;
    return narrowed(tag, byName, firstDate, lastDate, byDate);
}

} // namespace veltrona
