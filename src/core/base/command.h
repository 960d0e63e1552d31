// What the outermost handler of a window runs is one command, with all that it calls. Resources
// that are shared out by command, such as the patience with locks, ask here which one is running.
#pragma once

namespace veltrona {

/// RAII marker for a running command. Nested scopes count as the outermost; state is per thread.
class CommandScope {
public:
    CommandScope() { s_begun += s_depth++ == 0; }
    ~CommandScope() { --s_depth; }
    CommandScope(const CommandScope &) = delete;
    CommandScope &operator=(const CommandScope &) = delete;

    /// Another number for each command; 0 outside of any.
    static long running() { return s_depth > 0 ? s_begun : 0; }

private:
    inline static thread_local int s_depth = 0;
    inline static thread_local long s_begun = 0;
};

} // namespace veltrona
