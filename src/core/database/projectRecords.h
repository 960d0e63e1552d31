// The records of the open project: its connection, and a copy in memory as long as that is what the
// file holds. The connection must outlive it.
#pragma once

#include "core/database/recordColumns.h"
#include "core/platform/sqlite/connection.h"

#include <cstddef>
#include <functional>
#include <optional>

namespace veltrona {

class ProjectRecords {
public:
    static constexpr std::size_t maxBytes = std::size_t(1) << 30;
    /// The copy never takes more than `bound` bytes; with 0 there is none.
    explicit ProjectRecords(const sqlite::Connection &connection, std::size_t bound = maxBytes)
        : m_connection(connection), m_bound(bound) {}

    const sqlite::Connection &connection() const { return m_connection; }

    /// The copy, brought up to date with the file; null if there is none. Records that this
    /// connection has added are read; another program's change or a clean drops the copy. Valid
    /// until the next call. Throws Failure if the file can't be read.
    const RecordColumns *held();
    /// The same, but reads the records if there is no copy, or what `readAhead` has left of them;
    /// null if they can't be held.
    const RecordColumns *read();
    /// Reads a slice of the records into a copy that isn't whole yet, until `isOver`. False if
    /// there is nothing more to read ahead. Any change of the file between two slices makes it
    /// begin anew. Within a ReadTransaction, as another program must not commit inside a slice.
    /// Throws Failure; what was read stays if the file is locked.
    bool readAhead(const std::function<bool()> &isOver);

    /// Differs whenever the file may have changed.
    struct Version {
        qint64 data = 0;    // changes with commits of other connections
        qint64 changes = 0; // counts the records changed by this connection
        friend bool operator==(const Version &, const Version &) = default;
    };
    Version version() const;

private:
    bool readOn(const std::function<bool()> &isOver);
    bool append(const std::function<bool()> &isOver);

    const sqlite::Connection &m_connection;
    std::size_t m_bound;
    std::optional<RecordColumns> m_columns;
    Version m_version;               // of what m_columns hold
    std::optional<qint64> m_tooMany; // records that didn't fit in memory
};

} // namespace veltrona
