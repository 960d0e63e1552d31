#include "core/platform/desktop/endSignals.h"

#include "core/platform/services.h"

#include <cerrno>
#include <csignal>
#include <utility>

#include <fcntl.h>
#include <unistd.h>

namespace veltrona::desktop {

namespace {

constexpr std::pair<int, int> noPipe{-1, -1};
std::pair<int, int> wakeUp = noPipe; // the read end, and the write end for the handler

/// May do next to nothing: it interrupts the program anywhere.
void noteSignal(int) {
    const int before = errno;
    services().endRequested = true;
    [[maybe_unused]] const auto written = write(wakeUp.second, "", 1);
    errno = before;
}

/// Does nothing for a signal that is ignored, as under nohup.
void setHandler(void (*handler)(int)) {
    for (const int number : {SIGTERM, SIGHUP, SIGINT}) {
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
    setHandler(noteSignal);
}

EndSignals::~EndSignals() {
    services().endRequested = false;
    if (!m_notifier)
        return;
    setHandler(SIG_DFL);
    m_notifier.reset();
    close(wakeUp.first);
    close(wakeUp.second);
    wakeUp = noPipe;
}

} // namespace veltrona::desktop
