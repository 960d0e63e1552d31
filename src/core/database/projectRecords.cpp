#include "core/database/projectRecords.h"

#include <QScopeGuard>

#include <new>

namespace veltrona {

ProjectRecords::Version ProjectRecords::version() const {
    return {m_connection.dataVersion(), m_connection.totalChanges()};
}

const RecordColumns *ProjectRecords::held() {
    if (!m_columns || !m_columns->isComplete())
        return nullptr;
    auto dropped = qScopeGuard([this] { m_columns.reset(); });
    const Version now = version();
    if (now != m_version) {
        const std::size_t before = m_columns->size();
        // Each of our own changes must have added a record after those that are held.
        if (now.data != m_version.data || !append({}) ||
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
    const bool areTooMany =
        m_tooMany && m_connection.number("SELECT count(*) FROM tblGoogleDays") >= *m_tooMany;
    return !areTooMany && readOn({}) ? &*m_columns : nullptr;
}

bool ProjectRecords::readAhead(const std::function<bool()> &isOver) {
    // Counting the records, to try again where they are fewer now, would take too long.
    return !held() && !m_tooMany && readOn(isOver) && !m_columns->isComplete();
}

/// False if the records can't be held.
bool ProjectRecords::readOn(const std::function<bool()> &isOver) {
    if (m_bound == 0)
        return false;
    const Version now = version();
    auto dropped = qScopeGuard([this] { m_columns.reset(); });
    if (!m_columns || now != m_version) {
        m_columns.emplace();
        m_version = now;
    }
    if (!append(isOver))
        return false;
    m_tooMany.reset();
    dropped.dismiss();
    if (m_columns->isComplete())
        m_connection.freeCache(); // what was read is in memory twice now
    return true;
}

/// False if they don't fit in memory, which isn't tried again with as many records.
bool ProjectRecords::append(const std::function<bool()> &isOver) {
    try {
        if (m_columns->append(m_connection, m_bound, isOver))
            return true;
    } catch (const std::bad_alloc &) {
        // Queries to SQLite need next to no memory.
    }
    m_tooMany = static_cast<qint64>(m_columns->size());
    return false;
}

} // namespace veltrona
