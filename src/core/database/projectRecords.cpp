#include "core/database/projectRecords.h"

#include <QScopeGuard>

#include <new>

namespace veltrona {

namespace {

std::size_t countOf(const sqlite::Connection &connection) {
    sqlite::Statement statement = connection.prepare("SELECT count(*) FROM tblGoogleDays");
    statement.step();
    return static_cast<std::size_t>(statement.int64(0));
}

} // namespace

ProjectRecords::Version ProjectRecords::version() const {
    return {m_connection.dataVersion(), m_connection.totalChanges()};
}

void ProjectRecords::drop() {
    m_columns.reset();
}

const RecordColumns *ProjectRecords::held() {
    if (!m_columns)
        return nullptr;
    auto dropped = qScopeGuard([this] { drop(); });
    const Version now = version();
    if (now != m_version) {
        const std::size_t before = m_columns->size();
        // Every change of ours has to be a record behind those that are held.
        if (now.data != m_version.data || !readOn() ||
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
    const bool isLimited = m_tooMany != std::numeric_limits<std::size_t>::max();
    if (m_bound == 0 || (isLimited && countOf(m_connection) >= m_tooMany))
        return nullptr;
    auto dropped = qScopeGuard([this] { drop(); });
    m_version = version();
    m_columns.emplace();
    if (!readOn())
        return nullptr;
    dropped.dismiss();
    return &*m_columns;
}

/// False if memory doesn't hold them, which isn't tried again with as many records.
bool ProjectRecords::readOn() {
    try {
        if (m_columns->readOn(m_connection, m_bound))
            return true;
    } catch (const std::bad_alloc &) {
        // The engine answers then, which needs next to none.
    }
    m_tooMany = m_columns->size();
    return false;
}

} // namespace veltrona
