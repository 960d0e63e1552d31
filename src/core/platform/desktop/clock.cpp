#include "core/platform/desktop/clock.h"

namespace veltrona::desktop {

namespace {
std::function<QDateTime()> &installedClock() {
    static std::function<QDateTime()> clock;
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

} // namespace veltrona::desktop
