#include "core/platform/sqlite/workLimit.h"

#include "core/base/command.h"
#include "core/platform/sqlite/connection.h"
#include "core/platform/sqlite/fileAccess.h"

namespace veltrona::sqlite {

namespace {

constexpr std::clock_t notBegun = -1;

} // namespace

void WorkLimit::beginRun() {
    m_steps = 0;
    m_began = notBegun;
    const long command = CommandScope::running();
    if (command != 0 && command == m_command)
        return;
    m_command = command;
    m_stepsOfCommand = m_allowed = 0;
}

void WorkLimit::beginStatement() {
    beginRun();
    m_textBytes = 0;
}

/// Our statements take some hundred steps for a record, and a record takes some hundred bytes; a
/// command has a handful of statements that read all records. A step costs the more the longer the
/// values are that it passes over.
bool WorkLimit::addSteps(int steps) {
    constexpr qint64 scans = 4;
    constexpr qint64 secondsAtLeast = 5;
    constexpr qint64 bytesPerSecond = 1'000'000;
    // Asking at each run took a twelfth of an import.
    if (m_began == notBegun)
        m_began = std::clock();
    m_steps += steps;
    m_stepsOfCommand += steps;
    const qint64 size = m_files ? m_files->databaseSize() : 0;
    const qint64 most = 5'000'000 + 4 * size;
    const qint64 seconds = (std::clock() - m_began) / CLOCKS_PER_SEC;
    return m_steps <= most && m_stepsOfCommand <= scans * most + m_allowed &&
           seconds <= secondsAtLeast + size / bytesPerSecond;
}

bool WorkLimit::isPlausible() {
    // What a transaction has added may not be in the file yet; and a file may be in UTF-16, which
    // takes two bytes for some characters that take three in UTF-8.
    m_maxTextBytes = maxTextBytes + 2 * (m_files ? m_files->databaseSize() : 0);
    return m_textBytes <= m_maxTextBytes;
}

} // namespace veltrona::sqlite
