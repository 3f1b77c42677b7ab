// The Unix socket on which injection listens: for this user only, gone with its
// object.
#pragma once

#include <string>

namespace corvane::host {

/// Owner: InjectServer. Threads: main thread.
class InjectSocket {
public:
    /// Creates the socket, and its directory if there is none. The socket of a process that
    /// has ended is replaced. Throws std::runtime_error, which says what is in the way.
    explicit InjectSocket(const std::string& path);
    ~InjectSocket();
    InjectSocket(const InjectSocket&) = delete;
    InjectSocket& operator=(const InjectSocket&) = delete;

    int fd() const { return m_fd; }

    /// The next peer's connection, or -1. A peer of another user is turned away.
    int accept();

private:
    std::string m_path;
    int m_fd;
};

}  // namespace corvane::host
