// SIGINT and SIGTERM as a file descriptor, so that a command can poll for them together with
// other descriptors and clean up before it ends.
#pragma once

#include <signal.h>

namespace corvane::tool {

/// Owner: the command. Threads: one. The signals are blocked while the object lives.
class StopSignals {
public:
    /// Throws std::system_error.
    StopSignals();
    ~StopSignals();
    StopSignals(const StopSignals&) = delete;
    StopSignals& operator=(const StopSignals&) = delete;

    /// Becomes readable when a signal arrives.
    int fd() const { return m_fd; }

private:
    sigset_t m_before;
    int m_fd;
};

}  // namespace corvane::tool
