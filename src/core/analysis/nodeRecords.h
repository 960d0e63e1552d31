// The day records of a tree node within a period, as the end of a statement that reads them.
#pragma once

#include "core/analysis/nodeTag.h"
#include "core/platform/sqlite/connection.h"

#include <string>

namespace veltrona {

struct NodeRecords {
    std::string sql; // begins with FROM and may be continued with AND
    std::vector<QString> bindings;
};

/// The records whose date texts lie from `firstDate` up to and including `lastDate`, by the road
/// that reads least: the index of dates, the index of names, or one plain scan.
NodeRecords nodeRecords(const sqlite::Connection &connection, const NodeTag &tag,
                        const QString &firstDate, const QString &lastDate);

} // namespace veltrona
