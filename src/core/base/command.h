// What the outermost handler of a window runs is one command, with all that it calls. What is
// limited per command, such as the wait for locks, asks here which one is running.
#pragma once

#include <QtGlobal>

namespace veltrona {

/// RAII marker for a running command. Nested scopes count as the outermost; state is per thread.
class CommandScope {
public:
    CommandScope() { s_begun += s_depth++ == 0; }
    ~CommandScope() { --s_depth; }
    Q_DISABLE_COPY_MOVE(CommandScope)

    /// Another number for each command; 0 outside of any.
    static long running() { return s_depth > 0 ? s_begun : 0; }

private:
    inline static thread_local int s_depth = 0;
    inline static thread_local long s_begun = 0;
};

} // namespace veltrona
