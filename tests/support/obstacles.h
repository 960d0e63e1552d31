// What stands in a program's way on a real machine and bites root too: a disk that is full, and the
// lack of a right to write. Each lasts as long as the object lives.
#pragma once

#include <csignal>
#include <cstdlib>

#include <sys/resource.h>
#include <unistd.h>

namespace veltrona::test {

/// Lets no file of this process grow beyond a size.
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

/// Turns root, who may write everywhere, into a user without rights.
class AnotherUser {
public:
    AnotherUser() : m_changed(::geteuid() == 0 && ::setresuid(65534, 65534, 0) == 0) {}
    ~AnotherUser() {
        if (m_changed && ::setresuid(0, 0, 0) != 0)
            std::abort();
    }
    AnotherUser(const AnotherUser &) = delete;
    AnotherUser &operator=(const AnotherUser &) = delete;

private:
    bool m_changed;
};

} // namespace veltrona::test
