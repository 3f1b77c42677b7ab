// The Unix socket on which injection listens.
#include "platform/host/inject/InjectSocket.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <stdexcept>
#include <system_error>
#include <utility>

namespace corvane::host {

namespace {

[[noreturn]] void fail(const std::string& path, const std::string& reason) {
    throw std::runtime_error(path + ": " + reason);
}

[[noreturn]] void failWithError(const std::string& path, const char* what) {
    fail(path, std::string(what) + ": " + std::generic_category().message(errno));
}

sockaddr_un addressOf(const std::string& path) {
    sockaddr_un address{};
    if (path.size() >= sizeof address.sun_path) {
        fail(path, "the path of a socket has at most " +
                       std::to_string(sizeof address.sun_path - 1) + " bytes, this one has " +
                       std::to_string(path.size()));
    }
    address.sun_family = AF_UNIX;
    path.copy(address.sun_path, path.size());
    return address;
}

Descriptor openSocket(const std::string& path) {
    Descriptor fd(socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0));
    if (fd.get() < 0) {
        failWithError(path, "no socket can be made");
    }
    return fd;
}

// A user who may write to the directory could replace the socket.
void requireOwnDirectory(const std::string& path) {
    auto directory = std::filesystem::path(path).parent_path();
    directory = directory.empty() ? "." : directory;
    struct stat status {};
    if (mkdir(directory.c_str(), 0700) != 0 && errno != EEXIST) {
        failWithError(path, "its directory can't be created");
    }
    if (lstat(directory.c_str(), &status) != 0) {
        failWithError(path, "its directory can't be used");
    }
    if (S_ISLNK(status.st_mode)) {
        fail(path, "its directory is a link");
    }
    if (status.st_uid != geteuid()) {
        fail(path, "its directory belongs to user " + std::to_string(status.st_uid) +
                       ", not to user " + std::to_string(geteuid()));
    }
    if ((status.st_mode & (S_IWGRP | S_IWOTH)) != 0) {
        fail(path, "others may write to its directory; chmod go-w takes that from them");
    }
}

// The lock is held as long as the socket exists. Its file stays: removing it would let two
// daemons hold locks on two files of that name.
Descriptor lock(const std::string& path) {
    const auto file = path + ".lock";
    Descriptor fd(open(file.c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW, 0600));
    if (fd.get() < 0) {
        failWithError(path, "it can't be listened to");
    }
    if (flock(fd.get(), LOCK_EX | LOCK_NB) != 0) {
        fail(path, "another process listens there");
    }
    return fd;
}

// Removes the socket of a process that has ended.
void removeStale(const std::string& path, const sockaddr_un& address) {
    struct stat status {};
    if (lstat(path.c_str(), &status) != 0) {
        return;
    }
    if (!S_ISSOCK(status.st_mode)) {
        fail(path, "there is something that is not a socket");
    }
    const auto fd = openSocket(path);
    const auto* const name = reinterpret_cast<const sockaddr*>(&address);
    if (connect(fd.get(), name, sizeof address) == 0 || errno != ECONNREFUSED) {
        fail(path, "another process listens there");
    }
    unlink(path.c_str());
}

bool isOwnUser(int fd) {
    ucred peer{};
    socklen_t size = sizeof peer;
    return getsockopt(fd, SOL_SOCKET, SO_PEERCRED, &peer, &size) == 0 && peer.uid == geteuid();
}

Descriptor openReserve() {
    return Descriptor(open("/dev/null", O_RDONLY | O_CLOEXEC));
}

}  // namespace

InjectSocket::InjectSocket(const std::string& path) : m_path(path) {
    const auto address = addressOf(path);
    requireOwnDirectory(path);
    m_lock = lock(path);
    removeStale(path, address);
    m_fd = openSocket(path);
    // The mode is given to the socket before it has a name: there is no moment at which
    // others could connect.
    struct stat status {};
    if (fchmod(m_fd.get(), 0600) != 0 ||
        bind(m_fd.get(), reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0 ||
        listen(m_fd.get(), SOMAXCONN) != 0 || lstat(path.c_str(), &status) != 0) {
        failWithError(path, "it can't be listened to");
    }
    m_device = status.st_dev;
    m_inode = status.st_ino;
    m_reserve = openReserve();
}

// Removes only the socket that this object created.
InjectSocket::~InjectSocket() {
    struct stat status {};
    if (lstat(m_path.c_str(), &status) == 0 && status.st_dev == m_device &&
        status.st_ino == m_inode) {
        unlink(m_path.c_str());
    }
}

// A waiting peer would wake the main loop again and again.
void InjectSocket::turnAway() {
    m_reserve = Descriptor();
    const Descriptor peer(accept4(m_fd.get(), nullptr, nullptr, SOCK_CLOEXEC));
    m_reserve = openReserve();
}

Descriptor InjectSocket::accept() {
    Descriptor peer(accept4(m_fd.get(), nullptr, nullptr, SOCK_CLOEXEC | SOCK_NONBLOCK));
    if (peer.get() < 0 && (errno == EMFILE || errno == ENFILE)) {
        const int error = errno;
        turnAway();
        throw std::system_error(error, std::generic_category());
    }
    return isOwnUser(peer.get()) ? std::move(peer) : Descriptor();
}

}  // namespace corvane::host
