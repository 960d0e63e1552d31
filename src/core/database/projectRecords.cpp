#include "core/database/projectRecords.h"

#include <QScopeGuard>

#include <new>

namespace veltrona {

ProjectRecords::Version ProjectRecords::version() const {
    return {m_connection.dataVersion(), m_connection.totalChanges()};
}

const RecordColumns *ProjectRecords::held() {
    if (!m_columns)
        return nullptr;
    auto dropped = qScopeGuard([this] { m_columns.reset(); });
    const Version now = version();
    if (now != m_version) {
        const std::size_t before = m_columns->size();
        // Each of our own changes must have added a record after those that are held.
        if (now.data != m_version.data || !append() ||
            static_cast<qint64>(m_columns->size() - before) != now.changes - m_version.changes)
            return nullptr;
        m_version = now;
    }
    dropped.dismiss();
    return &*m_columns;
}

const RecordColumns *ProjectRecords::read() {
    if (const RecordColumns *columns = held())
        return columns;
    if (m_bound == 0 ||
        (m_tooMany && m_connection.number("SELECT count(*) FROM tblGoogleDays") >= *m_tooMany))
        return nullptr;
    auto dropped = qScopeGuard([this] { m_columns.reset(); });
    m_version = version();
    m_columns.emplace();
    if (!append())
        return nullptr;
    dropped.dismiss();
    return &*m_columns;
}

/// False if they don't fit in memory, which isn't tried again with as many records.
bool ProjectRecords::append() {
    try {
        if (m_columns->append(m_connection, m_bound))
            return true;
    } catch (const std::bad_alloc &) {
        // Queries to SQLite need next to no memory.
    }
    m_tooMany = static_cast<qint64>(m_columns->size());
    return false;
}

} // namespace veltrona
