// The one filter that failures of handlers pass through. Handlers run inside `filtered`, so that no
// exception ever unwinds through the frames of Qt; the application object sends the rest here. The
// boxes are titled with the application's name.
#pragma once

#include "core/base/command.h"
#include "core/base/failure.h"

#include <utility>

namespace veltrona {

/// Reports a failure of SQLite or the file system, or an unreadable value, with number and text;
/// the run continues.
void reportFailure(const Failure &failure);

/// Reports anything else, then ends the event loops in order, with exit status 1.
void reportFatal(const char *what) noexcept;

/// Sends the exception in flight to one of the two above.
void filterCurrentException() noexcept;

template<typename Handler>
void filtered(Handler &&handler) noexcept {
    const CommandScope command;
    try {
        std::forward<Handler>(handler)();
    } catch (...) {
        filterCurrentException();
    }
}

} // namespace veltrona
