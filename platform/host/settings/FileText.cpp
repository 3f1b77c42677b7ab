// Reads a file as text, up to a limit.
#include "platform/host/settings/FileText.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

namespace corvane::host {

// O_NONBLOCK: a pipe without a writer must not block the start.
FileText readFileText(const std::string& path) {
    const int fd = open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY);
    if (fd < 0) {
        return {errno, "", false, false};
    }
    FileText result{};
    ssize_t size = 1;
    for (char piece[4096]; size > 0 && !result.isCut;) {
        size = read(fd, piece, sizeof piece);
        result.text.append(piece, size > 0 ? static_cast<std::size_t>(size) : 0);
        result.isCut = result.text.size() > MAX_FILE_BYTES;
    }
    struct stat status {};
    const bool isPipe = fstat(fd, &status) == 0 && S_ISFIFO(status.st_mode);
    close(fd);
    result.isBroken = size < 0 || (isPipe && result.text.empty());
    if (result.isCut) {
        result.text.resize(result.text.rfind('\n', MAX_FILE_BYTES - 1) + 1);
    }
    return result;
}

}  // namespace corvane::host
