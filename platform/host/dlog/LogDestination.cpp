// Chooses where the log goes.
#include "platform/host/dlog/LogDestination.h"

#include <fcntl.h>
#include <stdlib.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <system_error>

#include "platform/host/dlog/LogBuffer.h"
#include "platform/host/settings/Settings.h"

namespace corvane::host {

namespace {

// The service manager names the stream it gave to a service as standard error, which may
// have been replaced since.
bool standardErrorLeadsToJournal() {
    const char* const stream = secure_getenv("JOURNAL_STREAM");
    struct stat status {};
    return stream != nullptr && fstat(STDERR_FILENO, &status) == 0 &&
           stream == std::to_string(status.st_dev) + ':' + std::to_string(status.st_ino);
}

LogDestination standardError() {
    // A descriptor that is free now will be somebody else's file or socket soon.
    const bool isOpen = fcntl(STDERR_FILENO, F_GETFD) >= 0;
    return {false, isOpen ? STDERR_FILENO : -1};
}

// Never one of the first three descriptors, where others would write. A link may lead to any file
// this process can write. A pipe or a device must not be waited for.
int openFile(const std::string& path) {
    constexpr int flags = O_WRONLY | O_APPEND | O_CREAT | O_CLOEXEC | O_NOCTTY | O_NOFOLLOW;
    const int fd = open(path.c_str(), flags | O_NONBLOCK, 0640);
    if (fd < 0 || fd > STDERR_FILENO) {
        return fd;
    }
    const int higher = fcntl(fd, F_DUPFD_CLOEXEC, STDERR_FILENO + 1);
    const int error = errno;
    close(fd);
    errno = error;
    return higher;
}

// A device or a pipe has a reader who waits.
bool isPlainFile(int fd) {
    struct stat status {};
    return fstat(fd, &status) == 0 && S_ISREG(status.st_mode);
}

// Without a thread to be had, lines don't wait.
LogBuffer* bufferOf(int fd, std::chrono::milliseconds patience) {
    try {
        return patience.count() > 0 && isPlainFile(fd) ? LogBuffer::open(fd, patience) : nullptr;
    } catch (const std::system_error&) {
        return nullptr;
    }
}

}  // namespace

LogDestination openLogDestination(const Settings& settings, std::vector<std::string>& complaints) {
    switch (settings.log.output) {
        case LogOutput::automatic:
            return standardErrorLeadsToJournal() ? LogDestination{true, -1} : standardError();
        case LogOutput::standardError:
            break;
        case LogOutput::journal:
            // The journal's own library drops records in silence where there is no journal.
            if (access("/run/systemd/journal/socket", F_OK) == 0) {
                return {true, -1};
            }
            complaints.emplace_back("the log can't go to the journal, there is none");
            break;
        case LogOutput::file:
            if (settings.log.file.empty()) {
                complaints.emplace_back("[log] output is file, but no file is given");
            } else if (const int fd = openFile(settings.log.file); fd >= 0) {
                return {false, fd, bufferOf(fd, settings.log.flush)};
            } else {
                complaints.push_back(
                    "the log can't go to " + settings.log.file + ": " +
                    (errno == ELOOP ? "it is a link" : std::generic_category().message(errno)));
            }
            break;
    }
    return standardError();
}

}  // namespace corvane::host
