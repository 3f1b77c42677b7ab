// A file descriptor that is closed with its owner.
#pragma once

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <system_error>
#include <utility>

namespace corvane::host {

/// Owner: the code that opened it. Threads: the owner's.
class Descriptor {
public:
    explicit Descriptor(int fd = -1) : m_fd(fd) {}
    ~Descriptor() {
        if (m_fd >= 0) {
            close(m_fd);
        }
    }
    Descriptor(Descriptor&& other) noexcept : m_fd(other.release()) {}
    Descriptor& operator=(Descriptor&& other) noexcept {
        std::swap(m_fd, other.m_fd);
        return *this;
    }

    int get() const { return m_fd; }
    int release() { return std::exchange(m_fd, -1); }

    /// Throws std::system_error if no descriptor is free.
    static Descriptor duplicate(int fd) {
        Descriptor made(fcntl(fd, F_DUPFD_CLOEXEC, 0));
        if (made.get() < 0) {
            throw std::system_error(errno, std::generic_category());
        }
        return made;
    }

private:
    int m_fd;
};

}  // namespace corvane::host
