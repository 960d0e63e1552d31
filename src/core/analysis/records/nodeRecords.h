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
    bool areFew = false; // an index finds them in moments, whatever else the table holds
};

/// The first and the last second of a period, as the table compares them.
struct DateTexts {
    QString first;
    QString last;
};
/// Times of day of the range don't count.
DateTexts dateTextsOf(const DateRange &range);

/// Found in the way that reads least: by the index of dates, the index of names or one plain scan.
NodeRecords nodeRecords(const sqlite::Connection &connection, const NodePath &path,
                        const DateRange &range);

} // namespace veltrona
