// The day records of a tree node within a period, as the end of a statement that reads them in the
// order of GoogleDayId.
#pragma once

#include "core/analysis/records/nodePath.h"
#include "core/base/dateValue.h"
#include "core/platform/sqlite/connection.h"

#include <QString>

#include <string>
#include <vector>

namespace veltrona {

struct NodeRecords {
    std::string sql; // begins with FROM
    std::vector<QString> bindings;
    /// Reading them by an index is a matter of moments, whatever the table holds.
    bool areFew = false;
};

/// A condition on the records of a node.
struct NodeCondition {
    NameColumn column;
    QString value;
};
/// The type of a keyword has none: its records are the keyword's.
std::vector<NodeCondition> conditionsOf(const NodePath &path);

/// The texts of the first and the last second of a period, as the table compares them.
struct DateTexts {
    QString first;
    QString last;
};
/// Times of day of the range don't count.
DateTexts dateTextsOf(const DateRange &range);

/// The node's records in a period, found in the way that reads least: by the index of dates, by the
/// index of names, or by one plain scan.
NodeRecords nodeRecords(const sqlite::Connection &connection, const NodePath &path,
                        const DateRange &range);

} // namespace veltrona
