#include "core/platform/desktop/endSignals.h"

#include "core/platform/services.h"

#include <cerrno>
#include <csignal>
#include <initializer_list>
#include <utility>

#include <fcntl.h>
#include <unistd.h>

namespace veltrona::desktop {

namespace {

constexpr std::initializer_list<int> endSignals = {SIGTERM, SIGHUP, SIGINT};

/// The read end, and the write end for the handler. Made once and never closed: the handler may
/// still be running in another thread when the EndSignals are destroyed.
int wakeUp[2] = {-1, -1};

/// Must be async-signal-safe.
void noteSignal(int) {
    const int before = errno;
    services().endRequested = true;
    [[maybe_unused]] const auto written = write(wakeUp[1], "", 1);
    errno = before;
}

void setHandler(std::initializer_list<int> numbers, void (*handler)(int)) {
    for (const int number : numbers) {
        struct sigaction action {};
        sigaction(number, nullptr, &action);
        if (action.sa_handler == SIG_IGN)
            continue;
        action.sa_handler = handler;
        action.sa_flags = SA_RESTART;
        sigaction(number, &action, nullptr);
    }
}

void drain() {
    char bytes[16];
    while (read(wakeUp[0], bytes, sizeof bytes) > 0) {
    }
}

} // namespace

EndSignals::EndSignals(std::function<void()> end) {
    services().endRequested = false;
    setHandler({SIGXFSZ}, [](int) {}); // SIG_IGN would be inherited by started programs
    if (wakeUp[0] < 0 && pipe2(wakeUp, O_CLOEXEC | O_NONBLOCK) != 0)
        return; // the signals kill, as they do by themselves
    drain();
    m_notifier = std::make_unique<QSocketNotifier>(wakeUp[0], QSocketNotifier::Read);
    QObject::connect(m_notifier.get(), &QSocketNotifier::activated, m_notifier.get(),
                     [end = std::move(end)] {
                         drain();
                         end();
                     });
    setHandler(endSignals, noteSignal);
}

EndSignals::~EndSignals() {
    services().endRequested = false;
    setHandler({SIGXFSZ}, SIG_DFL);
    if (m_notifier)
        setHandler(endSignals, SIG_DFL);
}

} // namespace veltrona::desktop
