#include "core/analysis/records/nodeRecords.h"

namespace veltrona {

namespace {

/// A record costs several times as much by way of an index, so that an index pays for a small
/// share of the table only: one in so many.
constexpr qint64 smallShare = 8;
/// Up to here it pays beside the records in memory that have yet to be read.
constexpr qint64 fewShare = 32;

using Conditions = std::vector<NodeCondition>;

/// `mark` is a plus sign in front of a column to keep the indexes out that it leads.
void add(NodeRecords &records, const char *mark, const QString &column, const char *comparison,
         const QString &value) {
    records.sql += std::string(" AND ") + mark + column.toStdString() + comparison;
    records.bindings.push_back(value);
}

void addConditions(NodeRecords &records, const Conditions &conditions) {
    for (const NodeCondition &condition : conditions)
        add(records, "", condition.column, " = ?", condition.value);
}

void addDates(NodeRecords &records, const char *mark, const QString &first, const QString &last) {
    const QString date = QStringLiteral("GoogleDate");
    add(records, mark, date, " >= ?", first);
    add(records, mark, date, " <= ?", last);
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

qint64 lastId(const sqlite::Connection &connection) {
    sqlite::Statement statement = connection.prepare("SELECT max(GoogleDayId) FROM tblGoogleDays");
    statement.step();
    return statement.int64(0);
}

const std::string anyRecord = "FROM tblGoogleDays WHERE 1";

/// The records that an index finds, by their ids: those come sorted and go through the table once.
NodeRecords byIds(const NodeRecords &indexed) {
    return {"FROM tblGoogleDays NOT INDEXED WHERE GoogleDayId IN (SELECT GoogleDayId " +
                indexed.sql + ")",
            indexed.bindings};
}

} // namespace

NodeRecords nodeRecords(const sqlite::Connection &connection, const NodeTag &tag,
                        const QString &firstDate, const QString &lastDate) {
    const qint64 records = lastId(connection);
    const qint64 tooMany = records / smallShare + 1;
    NodeRecords named{anyRecord, {}};
    Conditions indexedNames = tag.conditions;
    std::erase_if(indexedNames, [](const auto &each) { return each.column == u"adWordsTyp"; });
    addConditions(named, indexedNames);
    NodeRecords dated{anyRecord, {}};
    addDates(dated, "", firstDate, lastDate);

    const qint64 names = indexedNames.empty() ? tooMany : countOf(connection, named, tooMany);
    const qint64 dates = countOf(connection, dated, names);
    NodeRecords found{"FROM tblGoogleDays NOT INDEXED WHERE 1", {}};
    if (dates < names) {
        found = byIds(dated);
        addConditions(found, tag.conditions);
    } else if (names < tooMany) {
        addDates(named, "+", firstDate, lastDate);
        found = byIds(named);
        addConditions(found, tag.conditions);
    } else {
        addConditions(found, tag.conditions);
        addDates(found, "", firstDate, lastDate);
    }
    found.areFew = std::min(names, dates) <= records / fewShare;
    return found;
}

} // namespace veltrona
