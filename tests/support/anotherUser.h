// Runs a scope without root's rights: CI runs as root, to whom nothing is read-only. A user who
// isn't root keeps the own rights, which do as well.
#pragma once

#include <unistd.h>

namespace veltrona {

class AnotherUser {
public:
    AnotherUser() {
        // The saved id stays root's, so that there is a way back; access() asks the real one.
        if (m_root && setresuid(nobody, nobody, 0) != 0)
            m_root = false;
    }
    ~AnotherUser() {
        if (m_root && setresuid(0, 0, 0) != 0)
            _exit(70);
    }
    AnotherUser(const AnotherUser &) = delete;
    AnotherUser &operator=(const AnotherUser &) = delete;

    /// False if root's rights couldn't be laid down.
    bool works() const { return geteuid() != 0; }

private:
    static constexpr uid_t nobody = 65534;
    bool m_root = geteuid() == 0;
};

} // namespace veltrona
