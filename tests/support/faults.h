// What goes wrong around a test: the failure that an action throws, a full disk, and a user without
// root's rights.
#pragma once

#include "core/base/failure.h"

#include <csignal>
#include <optional>

#include <sys/resource.h>
#include <unistd.h>

namespace veltrona {

template<typename Action>
std::optional<Failure> failureOf(Action action) {
    try {
        action();
    } catch (const Failure &failure) {
        return failure;
    }
    return std::nullopt;
}

/// Runs a scope without root's rights: CI runs as root, to whom nothing is read-only. Other users
/// keep their own rights, which will do.
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

namespace test {

/// A full disk, for root too: no file of this process grows beyond a size. EFBIG stands for ENOSPC.
class FileSizeLimit {
public:
    explicit FileSizeLimit(rlim_t bytes) {
        std::signal(SIGXFSZ, SIG_IGN);
        getrlimit(RLIMIT_FSIZE, &m_before);
        const rlimit limit{bytes, m_before.rlim_max};
        setrlimit(RLIMIT_FSIZE, &limit);
    }
    ~FileSizeLimit() { setrlimit(RLIMIT_FSIZE, &m_before); }
    FileSizeLimit(const FileSizeLimit &) = delete;
    FileSizeLimit &operator=(const FileSizeLimit &) = delete;

private:
    rlimit m_before{};
};

} // namespace test

} // namespace veltrona
