#include "core/analysis/records/nodeRecords.h"

#include <algorithm>

namespace veltrona {

namespace {

/// A record costs several times as much by way of an index, so that an index pays only for one in
/// so many records of the table.
constexpr qint64 smallShare = 8;
/// Up to here it also pays instead of reading the records into memory.
constexpr qint64 fewShare = 32;

constexpr const char *dateColumn = "GoogleDate";

/// `mark` is a plus sign before a column to keep SQLite from using the indexes that it leads.
void add(NodeRecords &records, const char *mark, const char *column, const char *comparison,
         const QString &value) {
    records.sql += std::string(" AND ") + mark + column + comparison;
    records.bindings.push_back(value);
}

/// `names` by NameColumn; the index of names has all columns but AdwordsTyp.
void addNames(NodeRecords &records, const QStringList &names, bool indexedOnly = false) {
    for (std::size_t column = 0; const QString &name : names) {
        if (!indexedOnly || static_cast<NameColumn>(column) != NameColumn::AdwordsTyp)
            add(records, "", nameColumns[column], " = ?", name);
        ++column;
    }
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

const std::string anyRecord = "FROM tblGoogleDays WHERE 1";

/// The records that an index finds, by their ids: sorted, these go through the table in one pass.
NodeRecords byIds(const NodeRecords &indexed) {
    return {"FROM tblGoogleDays NOT INDEXED WHERE GoogleDayId IN (SELECT GoogleDayId " +
                indexed.sql + ")",
            indexed.bindings};
}

} // namespace

DateTexts dateTextsOf(const DateRange &range) {
    return {isoText(dayNumber(range.start)),
            isoText(dayNumber(range.end)) + QStringLiteral(" 23:59:59")};
}

NodeRecords nodeRecords(const sqlite::Connection &connection, const NodePath &path,
                        const DateRange &range) {
    const qint64 records = connection.number("SELECT max(GoogleDayId) FROM tblGoogleDays");
    const qint64 tooMany = records / smallShare + 1;
    const QStringList names = path.recordNames();
    const DateTexts texts = dateTextsOf(range);
    NodeRecords named{anyRecord, {}};
    addNames(named, names, true);
    NodeRecords dated{anyRecord, {}};
    addDates(dated, "", texts);

    const qint64 withNames = names.isEmpty() ? tooMany : countOf(connection, named, tooMany);
    const qint64 withDates = countOf(connection, dated, withNames);
    NodeRecords found{"FROM tblGoogleDays NOT INDEXED WHERE 1", {}};
    if (withDates < withNames) {
        found = byIds(dated);
        addNames(found, names);
    } else if (withNames < tooMany) {
        addDates(named, "+", texts);
        found = byIds(named);
        addNames(found, names);
    } else {
        addNames(found, names);
        addDates(found, "", texts);
    }
    found.areFew = std::min(withNames, withDates) <= records / fewShare;
    return found;
}

} // namespace veltrona
