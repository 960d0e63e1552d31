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

constexpr std::pair<int, int> noPipe{-1, -1};
std::pair<int, int> wakeUp = noPipe; // the read end, and the write end for the handler

/// Must be async-signal-safe.
void noteSignal(int) {
    const int before = errno;
    services().endRequested = true;
    [[maybe_unused]] const auto written = write(wakeUp.second, "", 1);
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

} // namespace

EndSignals::EndSignals(std::function<void()> end) {
    services().endRequested = false;
    setHandler({SIGXFSZ}, [](int) {}); // SIG_IGN would be inherited by started programs
    int ends[2];
    if (pipe2(ends, O_CLOEXEC | O_NONBLOCK) != 0)
        return; // the signals kill, as they do by themselves
    wakeUp = {ends[0], ends[1]};
    m_notifier = std::make_unique<QSocketNotifier>(wakeUp.first, QSocketNotifier::Read);
    QObject::connect(m_notifier.get(), &QSocketNotifier::activated, m_notifier.get(),
                     [end = std::move(end)] {
                         char bytes[16];
                         while (read(wakeUp.first, bytes, sizeof bytes) > 0) {
                         }
                         end();
                     });
    setHandler(endSignals, noteSignal);
}

EndSignals::~EndSignals() {
    services().endRequested = false;
    setHandler({SIGXFSZ}, SIG_DFL);
    if (!m_notifier)
        return;
    setHandler(endSignals, SIG_DFL);
    m_notifier.reset();
    close(wakeUp.first);
    close(wakeUp.second);
    wakeUp = noPipe;
}

} // namespace veltrona::desktop
