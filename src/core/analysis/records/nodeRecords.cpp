#include "core/analysis/records/nodeRecords.h"

#include <algorithm>

namespace veltrona {

namespace {

/// A record costs several times as much by way of an index, so that an index pays for a small
/// share of the table only: one in so many.
constexpr qint64 smallShare = 8;
/// Up to here it pays beside the records in memory that have yet to be read.
constexpr qint64 fewShare = 32;

using Conditions = std::vector<NodeCondition>;

constexpr const char *dateColumn = "GoogleDate";

/// `mark` is a plus sign before a column to keep SQLite from using the indexes that it leads.
void add(NodeRecords &records, const char *mark, const char *column, const char *comparison,
         const QString &value) {
    records.sql += std::string(" AND ") + mark + column + comparison;
    records.bindings.push_back(value);
}

void addConditions(NodeRecords &records, const Conditions &conditions) {
    for (const NodeCondition &condition : conditions)
        add(records, "", nameColumns[static_cast<std::size_t>(condition.column)], " = ?",
            condition.value);
}

void addDates(NodeRecords &records, const char *mark, const DateTexts &dates) {
    add(records, mark, dateColumn, " >= ?", dates.first);
    add(records, mark, dateColumn, " <= ?", dates.last);
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

std::vector<NodeCondition> conditionsOf(const NodePath &path) {
    Conditions conditions;
    const qsizetype narrowing = std::min(path.names.size(), qsizetype(NameColumn::KwType));
    for (qsizetype i = 0; i < narrowing; ++i)
        conditions.push_back({static_cast<NameColumn>(i), path.names[i]});
    return conditions;
}

DateTexts dateTextsOf(const DateRange &range) {
    return {isoText(dayNumber(range.start)),
            isoText(dayNumber(range.end)) + QStringLiteral(" 23:59:59")};
}

NodeRecords nodeRecords(const sqlite::Connection &connection, const NodePath &path,
                        const DateRange &range) {
    const qint64 records = lastId(connection);
    const qint64 tooMany = records / smallShare + 1;
    const Conditions conditions = conditionsOf(path);
    const DateTexts texts = dateTextsOf(range);
    NodeRecords named{anyRecord, {}};
    Conditions indexedNames = conditions;
    std::erase_if(indexedNames,
                  [](const auto &each) { return each.column == NameColumn::AdwordsTyp; });
    addConditions(named, indexedNames);
    NodeRecords dated{anyRecord, {}};
    addDates(dated, "", texts);

    const qint64 names = indexedNames.empty() ? tooMany : countOf(connection, named, tooMany);
    const qint64 dates = countOf(connection, dated, names);
    NodeRecords found{"FROM tblGoogleDays NOT INDEXED WHERE 1", {}};
    if (dates < names) {
        found = byIds(dated);
        addConditions(found, conditions);
    } else if (names < tooMany) {
        addDates(named, "+", texts);
        found = byIds(named);
        addConditions(found, conditions);
    } else {
        addConditions(found, conditions);
        addDates(found, "", texts);
    }
    found.areFew = std::min(names, dates) <= records / fewShare;
    return found;
}

} // namespace veltrona
