// The wall clock as the program reads it. Everything that asks for "now" comes here, so that tests
// and the tour can stand still in time.
#pragma once

#include <QDateTime>

#include <functional>

namespace veltrona::desktop {

/// The current local date and time.
QDateTime now();

/// Replaces the clock; an empty function brings the system's clock back.
void setClock(std::function<QDateTime()> clock);

} // namespace veltrona::desktop
