// The day records of a tree node within a period, as the end of a statement that reads them in the
// order of GoogleDayId.
#pragma once

#include "core/analysis/records/nodeTag.h"
#include "core/platform/sqlite/connection.h"

#include <string>

namespace veltrona {

struct NodeRecords {
    std::string sql; // begins with FROM
    std::vector<QString> bindings;
    bool areFew =
        false; // reading them by an index is a matter of moments, whatever the table holds
};

/// The records whose date texts lie from `firstDate` up to and including `lastDate`, by the road
/// that reads least: the index of dates, the index of names, or one plain scan.
NodeRecords nodeRecords(const sqlite::Connection &connection, const NodeTag &tag,
                        const QString &firstDate, const QString &lastDate);

} // namespace veltrona
