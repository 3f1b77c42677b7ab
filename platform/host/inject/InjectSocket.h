// The Unix socket on which injection listens: for this user only, removed with its object.
#pragma once

#include <sys/types.h>

#include <string>

#include "platform/host/main-loop/Descriptor.h"

namespace corvane::host {

/// Owner: InjectServer. Threads: main thread.
class InjectSocket {
public:
    /// Creates the socket, and its directory if there is none, which has to be the user's own.
    /// The socket of a process that has ended is replaced. Throws std::runtime_error with
    /// the reason.
    explicit InjectSocket(const std::string& path);
    ~InjectSocket();
    InjectSocket(const InjectSocket&) = delete;
    InjectSocket& operator=(const InjectSocket&) = delete;

    int fd() const { return m_fd.get(); }

    /// The next peer's connection, or none. A peer of another user is disconnected. Throws
    /// std::system_error if there is no descriptor for the peer, which is disconnected, too.
    Descriptor accept();

private:
    void turnAway();

    std::string m_path;
    Descriptor m_lock;  // of the file beside the socket: two daemons may start at once
    Descriptor m_fd;
    Descriptor m_reserve;  // closed to refuse a peer when no descriptor is free
    dev_t m_device = 0;    // of the socket's file
    ino_t m_inode = 0;
};

}  // namespace corvane::host
