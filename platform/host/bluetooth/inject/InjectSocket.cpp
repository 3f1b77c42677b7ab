// The Unix socket on which injection listens.
#include "InjectSocket.h"

#include <fcntl.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <stdexcept>
#include <system_error>

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

int openSocket(const std::string& path) {
    const int fd = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0);
    if (fd < 0) {
        failWithError(path, "no socket can be made");
    }
    return fd;
}

void createDirectory(const std::string& path) {
    const auto directory = std::filesystem::path(path).parent_path();
    if (!directory.empty() && mkdir(directory.c_str(), 0700) != 0 && errno != EEXIST) {
        failWithError(path, "its directory can't be created");
    }
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
    const int fd = openSocket(path);
    const int connected = connect(fd, reinterpret_cast<const sockaddr*>(&address), sizeof address);
    const int error = errno;
    close(fd);
    if (connected == 0 || error != ECONNREFUSED) {
        fail(path, "another process listens there");
    }
    unlink(path.c_str());
}

bool isOwnUser(int fd) {
    ucred peer{};
    socklen_t size = sizeof peer;
    return getsockopt(fd, SOL_SOCKET, SO_PEERCRED, &peer, &size) == 0 && peer.uid == geteuid();
}

int openReserve() {
    return open("/dev/null", O_RDONLY | O_CLOEXEC);
}

}  // namespace

InjectSocket::InjectSocket(const std::string& path) : m_path(path), m_fd(-1), m_reserve(-1) {
    const auto address = addressOf(path);
    createDirectory(path);
    removeStale(path, address);
    m_fd = openSocket(path);
    // The mode is given to the socket before it has a name: there is no moment at which
    // others could connect.
    if (fchmod(m_fd, 0600) != 0 ||
        bind(m_fd, reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0 ||
        listen(m_fd, SOMAXCONN) != 0) {
        const int error = errno;
        close(m_fd);
        errno = error;
        failWithError(path, "it can't be listened to");
    }
    m_reserve = openReserve();
}

InjectSocket::~InjectSocket() {
    close(m_reserve);
    close(m_fd);
    unlink(m_path.c_str());
}

// A peer that is left waiting would wake the main loop again and again.
void InjectSocket::turnAway() {
    close(m_reserve);
    close(accept4(m_fd, nullptr, nullptr, SOCK_CLOEXEC));
    m_reserve = openReserve();
}

int InjectSocket::accept() {
    const int peer = accept4(m_fd, nullptr, nullptr, SOCK_CLOEXEC | SOCK_NONBLOCK);
    if (peer < 0 && (errno == EMFILE || errno == ENFILE)) {
        const int error = errno;
        turnAway();
        throw std::system_error(error, std::generic_category());
    }
    if (peer >= 0 && !isOwnUser(peer)) {
        close(peer);
        return -1;
    }
    return peer;
}

}  // namespace corvane::host
