#include "core/platform/desktop/clock.h"

namespace veltrona::desktop {

namespace {
std::function<QDateTime()> &installedClock() {
    static std::function<QDateTime()> clock;
    return clock;
}
std::function<std::chrono::milliseconds()> &installedSteadyClock() {
    static std::function<std::chrono::milliseconds()> clock;
    return clock;
}
} // namespace

QDateTime now() {
    const auto &clock = installedClock();
    return clock ? clock() : QDateTime::currentDateTime();
}

void setClock(std::function<QDateTime()> clock) {
    installedClock() = std::move(clock);
}

std::chrono::milliseconds steadyTime() {
    const auto &clock = installedSteadyClock();
    return clock ? clock()
                 : std::chrono::duration_cast<std::chrono::milliseconds>(
                       std::chrono::steady_clock::now().time_since_epoch());
}

void setSteadyClock(std::function<std::chrono::milliseconds()> clock) {
    installedSteadyClock() = std::move(clock);
}

} // namespace veltrona::desktop
