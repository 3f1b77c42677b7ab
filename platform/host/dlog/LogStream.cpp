// The standard error as a place for whole lines.
#include "LogStream.h"

#include <signal.h>
#include <time.h>
#include <unistd.h>

#include <cerrno>
#include <mutex>

namespace corvane::host {

namespace {

// A pipe takes long lines in pieces, between which another thread could write.
constinit std::mutex streamMutex;

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

}  // namespace

int writeStandardError(const char* text, std::size_t size) noexcept {
    PipeSignalBlocked blocked;
    const std::lock_guard lock(streamMutex);
    while (size > 0) {
        const ssize_t written = write(STDERR_FILENO, text, size);
        if (written >= 0) {
            text += written;
            size -= static_cast<std::size_t>(written);
        } else if (errno != EINTR) {
            const int error = errno;
            if (error == EPIPE) {
                blocked.discardRaised();
            }
            return -error;
        }
    }
    return 0;
}

}  // namespace corvane::host
