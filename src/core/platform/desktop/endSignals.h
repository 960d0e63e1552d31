// Graceful shutdown on SIGTERM, SIGHUP and SIGINT. SIGXFSZ, which a limit on the size of files
// sends, ends nothing: the write fails instead.
#pragma once

#include <QSocketNotifier>

#include <functional>
#include <memory>

namespace veltrona::desktop {

/// Catches the signals while it exists, one object at a time: sets the services' endRequested at
/// once, and calls `end` from the event loop. A signal that was ignored at start, as under nohup,
/// stays ignored; started programs get the default actions. Needs a QCoreApplication. Constructing
/// it clears a pending request.
class EndSignals {
    Q_DISABLE_COPY_MOVE(EndSignals)
public:
    explicit EndSignals(std::function<void()> end);
    ~EndSignals();

private:
    std::unique_ptr<QSocketNotifier> m_notifier;
};

} // namespace veltrona::desktop
