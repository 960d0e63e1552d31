// How long a connection waits for the locks of other programs. No window may freeze for longer than
// ten seconds, and an import has many batches, each of which may have to wait.
#pragma once

#include <QElapsedTimer>

namespace veltrona::sqlite {

/// Within the services' lockWait and lockWaitOfCommand.
class BusyTimeout {
public:
    /// Sleeps a little and returns whether to try again. `attempt` counts from 0 for each lock.
    /// After giving up it waits for no lock in the same command, unless it is reset.
    bool wait(int attempt);
    void reset() { m_gaveUpIn = 0; }

private:
    QElapsedTimer m_timer;
    qint64 m_counted = 0;
    long m_gaveUpIn = 0;
};

} // namespace veltrona::sqlite
