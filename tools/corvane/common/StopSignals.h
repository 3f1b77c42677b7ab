// Ctrl+C and its like as a file descriptor, so that a command can wait for them
// together with other things and end in order.
#pragma once

#include <signal.h>

namespace corvane::tool {

/// Owner: the command. Threads: one. The signals are blocked as long as the object lives.
class StopSignals {
public:
    /// Throws std::system_error.
    StopSignals();
    ~StopSignals();
    StopSignals(const StopSignals&) = delete;
    StopSignals& operator=(const StopSignals&) = delete;

    /// Can be read once a signal has come.
    int fd() const { return m_fd; }

private:
    sigset_t m_before;
    int m_fd;
};

}  // namespace corvane::tool
