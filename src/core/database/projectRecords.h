// The records of the open project, ready for questions: the connection, and the records in memory
// as long as they are what the file holds. Lives beside its connection, which must outlive it.
#pragma once

#include "core/database/recordColumns.h"

#include <limits>
#include <optional>

namespace veltrona {

class ProjectRecords {
public:
    static constexpr std::size_t mostBytes = std::size_t(1) << 30;
    /// The records never take more memory than `bound` bytes; with 0 they aren't held at all.
    explicit ProjectRecords(const sqlite::Connection &connection, std::size_t bound = mostBytes)
        : m_connection(connection), m_bound(bound) {}

    const sqlite::Connection &connection() const { return m_connection; }

    /// The records in memory, true to the file as it is now; null if none are held. What this
    /// connection has added is read, another program's change or a clean drops all. Valid until the
    /// next call. Throws Failure if the file can't be read.
    const RecordColumns *held();
    /// The same, but the records are read if none are held; null if they can't be: ask the engine.
    const RecordColumns *read();

    /// Differs as soon as the file may hold something else.
    struct Version {
        qint64 data = 0;    // counts what other programs have committed
        qint64 changes = 0; // counts our own changed records
        friend bool operator==(const Version &, const Version &) = default;
    };
    Version version() const;

private:
    bool readOn();
    void drop();

    const sqlite::Connection &m_connection;
    std::size_t m_bound;
    std::optional<RecordColumns> m_columns;
    Version m_version;                                               // of what m_columns hold
    std::size_t m_tooMany = std::numeric_limits<std::size_t>::max(); // records that can't be held
};

} // namespace veltrona
