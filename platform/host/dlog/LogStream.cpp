// A descriptor as a place for whole lines.
#include "platform/host/dlog/LogStream.h"

#include <signal.h>
#include <time.h>
#include <unistd.h>

#include <cerrno>
#include <mutex>

namespace corvane::host {

namespace {

// A pipe takes long lines in pieces, between which another thread could write.
constinit std::mutex streamMutex;
bool lineIsTorn = false;  // only a part of the last line was taken

// Keeps the SIGPIPE of a closed pipe from ending the process, without changing what
// the process itself decided about that signal.
class PipeSignalBlocked {
public:
    PipeSignalBlocked() {
        sigemptyset(&m_pipe);
        sigaddset(&m_pipe, SIGPIPE);
        pthread_sigmask(SIG_BLOCK, &m_pipe, &m_before);
    }

    ~PipeSignalBlocked() { pthread_sigmask(SIG_SETMASK, &m_before, nullptr); }

    PipeSignalBlocked(const PipeSignalBlocked&) = delete;
    PipeSignalBlocked& operator=(const PipeSignalBlocked&) = delete;

    void discardRaised() {
        if (sigismember(&m_before, SIGPIPE) == 0) {
            const timespec atOnce{};
            sigtimedwait(&m_pipe, nullptr, &atOnce);
        }
    }

private:
    sigset_t m_pipe;
    sigset_t m_before;
};

// Returns how much was written; `size` is as much as there is to write.
std::size_t writeAll(int fd, const char* text, std::size_t size, int& error) {
    std::size_t done = 0;
    while (done < size) {
        const ssize_t written = write(fd, text + done, size - done);
        if (written >= 0) {
            done += static_cast<std::size_t>(written);
        } else if (errno != EINTR) {
            error = errno;
            break;
        }
    }
    return done;
}

}  // namespace

int writeLogLines(int fd, const char* lines, std::size_t size) noexcept {
    PipeSignalBlocked blocked;
    const std::lock_guard lock(streamMutex);
    int error = 0;
    if (lineIsTorn && writeAll(fd, "\n", 1, error) == 1) {
        lineIsTorn = false;
    }
    if (!lineIsTorn) {
        const auto done = writeAll(fd, lines, size, error);
        lineIsTorn = done > 0 && lines[done - 1] != '\n';
    }
    if (error == EPIPE) {
        blocked.discardRaised();
    }
    return -error;
}

}  // namespace corvane::host
