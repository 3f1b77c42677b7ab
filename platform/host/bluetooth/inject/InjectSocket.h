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

    /// The next peer's connection, or -1. A peer of another user is turned away. Throws
    /// std::system_error if there is no descriptor for the peer, which is turned away, too.
    int accept();

private:
    void turnAway();

    std::string m_path;
    int m_fd;
    int m_reserve;  // given up to turn a peer away when there is no other descriptor
};

}  // namespace corvane::host
