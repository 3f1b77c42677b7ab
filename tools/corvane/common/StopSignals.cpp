// SIGINT and SIGTERM as a file descriptor.
#include "tools/corvane/common/StopSignals.h"

#include <sys/signalfd.h>
#include <unistd.h>

#include <cerrno>
#include <system_error>

namespace corvane::tool {

StopSignals::StopSignals() {
    sigset_t stopping;
    sigemptyset(&stopping);
    sigaddset(&stopping, SIGINT);
    sigaddset(&stopping, SIGTERM);
    m_fd = signalfd(-1, &stopping, SFD_CLOEXEC);
    if (m_fd < 0) {
        throw std::system_error(errno, std::generic_category(), "signalfd");
    }
    pthread_sigmask(SIG_BLOCK, &stopping, &m_before);
}

// Consumes pending signals: they would end the process once they are unblocked.
StopSignals::~StopSignals() {
    sigset_t pending;
    sigpending(&pending);
    for (const int number : {SIGINT, SIGTERM}) {
        if (sigismember(&pending, number) == 1) {
            signalfd_siginfo taken;
            [[maybe_unused]] const auto size = read(m_fd, &taken, sizeof taken);
        }
    }
    close(m_fd);
    pthread_sigmask(SIG_SETMASK, &m_before, nullptr);
}

}  // namespace corvane::tool
