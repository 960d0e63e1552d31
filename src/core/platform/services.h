// The outside world as the program uses it. The start of the program fills it in; tests replace
// what they need under their control.
#pragma once

#include <QDateTime>
#include <QString>

#include <atomic>
#include <chrono>
#include <cstdint>
#include <functional>

namespace veltrona {

class Dialogs;
class Printing;

struct Services {
    /// Everything modal that the user answers. Owned by the caller, never null while windows exist.
    Dialogs *dialogs = nullptr;
    /// Null stands for the system's printers.
    Printing *printing = nullptr;

    /// The current local date and time.
    std::function<QDateTime()> now = [] { return QDateTime::currentDateTime(); };
    /// Monotonic, for durations.
    std::function<std::chrono::milliseconds()> steadyTime = [] {
        return std::chrono::duration_cast<std::chrono::milliseconds>(
            std::chrono::steady_clock::now().time_since_epoch());
    };

    /// Puts a bitmap, given by its handle, onto the clipboard; on true the clipboard owns it. May
    /// be empty.
    std::function<bool(std::uint32_t bitmap)> clipboard;

    /// True once the program is to end; long work that is done in steps stops at its next one. A
    /// signal handler sets it.
    std::atomic<bool> endRequested = false;
    /// Appended to the message before the program ends by a fault: what has been saved.
    QString fatalNote;

    /// The longest wait for one lock of another program on a project or the settings, and the
    /// longest of a command for those on a project in all; in milliseconds.
    int lockWait = 3000;
    int lockWaitOfCommand = 10000;
};
static_assert(std::atomic<bool>::is_always_lock_free, "a signal handler may set it");

/// The services in force: the only ones.
inline Services &services() {
    static Services inForce;
    return inForce;
}

} // namespace veltrona
