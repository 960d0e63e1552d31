// Visits the records of a query inside SQLite, in an aggregate function: several times as fast as
// stepping through the rows, since SQLite builds no result rows.
#pragma once

#include "core/platform/sqlite/connection.h"

#include <QString>

#include <functional>
#include <span>
#include <string_view>
#include <vector>

namespace veltrona::sqlite {

/// One value of a record during the visit. Only SQLite makes them.
class RecordValue {
public:
    ValueType type() const { return static_cast<ValueType>(sqlite3_value_type(m_value)); }
    qint64 int64() const { return sqlite3_value_int64(m_value); }
    double real() const { return sqlite3_value_double(m_value); }
    /// UTF-8, valid during the visit.
    std::string_view utf8() const;

private:
    sqlite3_value *m_value;
};

/// False ends the scan, as an exception does, which scanRecords throws on.
using RecordVisitor = std::function<bool(std::span<const RecordValue>)>;

/// Visits each record of "SELECT `columns` `rest`" in no fixed order. `rest` begins with FROM and
/// has a ? for each text of `bindings`. False if the visitor ended the scan; throws Failure.
bool scanRecords(const Connection &connection, std::string_view columns, std::string_view rest,
                 const std::vector<QString> &bindings, const RecordVisitor &visitor);

/// Defines the function that scans run. Done as a connection opens, since it can't be while a
/// statement runs.
void registerRecordScan(sqlite3 *handle);

} // namespace veltrona::sqlite
