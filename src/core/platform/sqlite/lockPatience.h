// How long a connection waits for the locks of other programs. No window may stand still for longer
// than ten seconds, and an import has many batches, each of which may have to wait.
#pragma once

#include <QElapsedTimer>

namespace veltrona::sqlite {

/// Within the services' lockWait and lockWaitOfCommand.
class LockPatience {
public:
    /// Sleeps a little and says whether to try again. `attempt` counts from 0 for each lock. Once
    /// given up, no lock is waited for in the same command, unless `renew` is called.
    bool wait(int attempt);
    /// After a commit.
    void renew() { m_gaveUpIn = 0; }

private:
    QElapsedTimer m_timer;
    qint64 m_counted = 0;
    long m_gaveUpIn = 0;
};

} // namespace veltrona::sqlite
