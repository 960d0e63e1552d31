// The clocks as the program reads them. Everything that asks for "now" comes here, so that tests
// and the tour can stand still in time.
#pragma once

#include <QDateTime>

#include <chrono>
#include <functional>

namespace veltrona::desktop {

/// The current local date and time.
QDateTime now();

/// Replaces the clock; an empty function brings the system's clock back.
void setClock(std::function<QDateTime()> clock);

/// For durations: counts on whatever happens to the wall clock.
std::chrono::milliseconds steadyTime();
void setSteadyClock(std::function<std::chrono::milliseconds()> clock);

} // namespace veltrona::desktop
