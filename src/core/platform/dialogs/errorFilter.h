// The one filter that failures of handlers pass through. Handlers run inside `filtered`, so that no
// exception ever unwinds through the frames of Qt; the application object sends the rest here. The
// boxes are titled with the application's name.
#pragma once

#include "core/base/command.h"
#include "core/base/failure.h"

#include <utility>

namespace veltrona {

/// Tells a failure of the engine, the parser or the file system with number and text; the run goes
/// on behind it.
void tellFailure(const Failure &failure);

/// Tells anything else, then ends the event loops in order, with exit status 1.
void tellFatal(const char *what) noexcept;

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
