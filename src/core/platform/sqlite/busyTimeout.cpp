#include "core/platform/sqlite/busyTimeout.h"

#include "core/base/command.h"
#include "core/platform/services.h"

#include <QThread>

#include <algorithm>
#include <utility>

namespace veltrona::sqlite {

namespace {

/// Of all connections together.
struct CommandWaits {
    long command = 0;
    qint64 milliseconds = 0;
};
thread_local CommandWaits waits;

} // namespace

/// SQLite's own handler sleeps longer each time and then loses every race against a busy writer.
bool BusyTimeout::wait(int attempt) {
    const long command = CommandScope::running();
    if (command == 0 || waits.command != command)
        waits = {command, attempt == 0 ? 0 : waits.milliseconds};
    if (attempt == 0) {
        m_timer.start();
        m_counted = 0;
    }
    const qint64 elapsed = m_timer.elapsed();
    waits.milliseconds += elapsed - std::exchange(m_counted, elapsed);
    const bool gaveUpBefore = command != 0 && m_gaveUpIn == command;
    if (gaveUpBefore || elapsed >= services().lockWait ||
        waits.milliseconds >= services().lockWaitOfCommand) {
        m_gaveUpIn = command;
        return false;
    }
    QThread::msleep(static_cast<unsigned long>(std::min(attempt + 1, 2)));
    return true;
}

} // namespace veltrona::sqlite
