// Opens the destination of the log.
#include "platform/host/log/LogDestination.h"

#include <fcntl.h>
#include <stdlib.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <system_error>

#include "platform/host/settings/Settings.h"

namespace corvane::host {

namespace {

// The service manager names the stream that it opened as a service's standard error. The service
// may have replaced it since.
bool standardErrorLeadsToJournal() {
    const char* const stream = secure_getenv("JOURNAL_STREAM");
    struct stat status {};
    return stream != nullptr && fstat(STDERR_FILENO, &status) == 0 &&
           stream == std::to_string(status.st_dev) + ':' + std::to_string(status.st_ino);
}

LogDestination standardError() {
    // If the descriptor is closed, the next file or socket of the process will get its number.
    const bool isOpen = fcntl(STDERR_FILENO, F_GETFD) >= 0;
    return {false, isOpen ? STDERR_FILENO : -1};
}

// Refuses links, which could lead to any file that this process can write. O_NONBLOCK keeps a pipe
// or a device from blocking the process. The result is none of the first three descriptors, which
// other code writes to.
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

}  // namespace

LogDestination openLogDestination(const Settings& settings, std::vector<std::string>& complaints) {
    switch (settings.log.output) {
        case LogOutput::automatic:
            return standardErrorLeadsToJournal() ? LogDestination{true, -1} : standardError();
        case LogOutput::standardError:
            break;
        case LogOutput::journal:
            // Without a journal, its library drops records and reports no error.
            if (access("/run/systemd/journal/socket", F_OK) == 0) {
                return {true, -1};
            }
            complaints.emplace_back("the log can't go to the journal, there is none");
            break;
        case LogOutput::file:
            if (settings.log.file.empty()) {
                complaints.emplace_back("[log] output is file, but no file is given");
            } else if (const int fd = openFile(settings.log.file); fd >= 0) {
                return {false, fd};
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
