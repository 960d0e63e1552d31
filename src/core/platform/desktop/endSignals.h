// The system's wish that the program ends: SIGTERM, SIGHUP and SIGINT, which would kill it in the
// middle of its work.
#pragma once

#include <QSocketNotifier>

#include <functional>
#include <memory>

namespace veltrona::desktop {

/// Catches the signals while it lives, one at a time: sets the services' endRequested at once, and
/// calls `end` from the event loop; a signal that the program was started to ignore stays ignored.
/// Needs a QCoreApplication. With a new one the program is no longer to end.
class EndSignals {
public:
    explicit EndSignals(std::function<void()> end);
    ~EndSignals();
    EndSignals(const EndSignals &) = delete;
    EndSignals &operator=(const EndSignals &) = delete;

private:
    std::unique_ptr<QSocketNotifier> m_notifier;
};

} // namespace veltrona::desktop
