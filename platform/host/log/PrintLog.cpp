// The platform log. In the journal a record has fields; elsewhere it is a line:
//     12:34:56.789 4711 I TAG: text
// The time is local, the number is the thread's, the letter is the priority's (D, I, W, E).
// Nothing is kept in memory, so a process that is killed loses no line that it has logged.
#define SD_JOURNAL_SUPPRESS_LOCATION  // a record names its caller, not a place in this file
#include "platform/host/log/PrintLog.h"

#include <dlog.h>
#include <pthread.h>
#include <signal.h>
#include <sys/uio.h>
#include <syslog.h>
#include <systemd/sd-journal.h>
#include <time.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdarg>
#include <cstddef>
#include <cstdio>
#include <exception>
#include <memory_resource>
#include <mutex>
#include <string>
#include <string_view>
#include <vector>

#include "platform/host/log/Controls.h"
#include "platform/host/log/LogDestination.h"
#include "platform/host/settings/Settings.h"

namespace corvane::host {

namespace {

// A pipe takes a long line in pieces; no other thread may write between them.
constinit std::mutex lineMutex;
bool lineIsTorn = false;  // only a part of the last line was written

// A child of fork() would inherit the mutex locked, without the thread that unlocks it.
void holdMutexDuringForks() {
    [[maybe_unused]] static const int registered = pthread_atfork(
        [] { lineMutex.lock(); }, [] { lineMutex.unlock(); }, [] { lineMutex.unlock(); });
}

// Makes one system call, unless the system takes only a part of the line. Blocks SIGPIPE, which
// would end the process, without changing how the process itself handles that signal.
int writeWhole(int fd, std::string_view line) {
    sigset_t pipe;
    sigset_t before;
    sigemptyset(&pipe);
    sigaddset(&pipe, SIGPIPE);
    pthread_sigmask(SIG_BLOCK, &pipe, &before);
    int error = 0;
    for (std::size_t done = 0; done < line.size() && error == 0;) {
        const ssize_t written = ::write(fd, line.data() + done, line.size() - done);
        if (written > 0) {
            done += static_cast<std::size_t>(written);
            lineIsTorn = line[done - 1] != '\n';
        } else if (written == 0) {
            error = EIO;  // a device that takes nothing
        } else if (errno != EINTR) {
            error = errno;
        }
    }
    if (error == EPIPE && sigismember(&before, SIGPIPE) == 0) {
        const timespec noWait{};
        sigtimedwait(&pipe, nullptr, &noWait);
    }
    pthread_sigmask(SIG_SETMASK, &before, nullptr);
    return -error;
}

int writeLine(int fd, int priority, std::string_view tag, const std::pmr::string& text) {
    holdMutexDuringForks();
    const std::lock_guard lock(lineMutex);
    timespec now{};
    clock_gettime(CLOCK_REALTIME, &now);
    tm local{};
    localtime_r(&now.tv_sec, &local);
    const bool isKnown = priority >= DLOG_PRIORITY_DEBUG && priority <= DLOG_PRIORITY_ERROR;
    std::array<char, 64> head;
    std::snprintf(head.data(), head.size(), "%02d:%02d:%02d.%03ld %d %c ", local.tm_hour,
                  local.tm_min, local.tm_sec, now.tv_nsec / 1000000, gettid(),
                  isKnown ? "DIWE"[priority - DLOG_PRIORITY_DEBUG] : '?');

    std::pmr::string line(text.get_allocator());
    line.reserve(head.size() + tag.size() + text.size());
    line.append(head.data()).append(tag).append(": ").append(text);
    replaceControls(line, NewLines::replaced);
    line += '\n';
    if (lineIsTorn) {
        line.insert(line.begin(), '\n');
    }
    return writeWhole(fd, line);
}

/// A place in a source file. It is unknown if it has no file or no function.
struct Place {
    const char* file = nullptr;
    const char* function = nullptr;
    int line = 0;
};

// Returns the place that the daemon's log header puts in front of its lines. It comes from the
// arguments, so that no text can forge it.
Place placeOf(std::string_view format, va_list arguments) {
    Place place;
    if (format.starts_with("%s: %s(%d) > ")) {
        place.file = va_arg(arguments, const char*);
        place.function = va_arg(arguments, const char*);
        place.line = va_arg(arguments, int);
    }
    return place;
}

int sendToJournal(int priority, const char* tag, std::pmr::string& text, const Place& place) {
    constexpr std::array priorities{LOG_DEBUG, LOG_INFO, LOG_WARNING, LOG_ERR};
    const int syslogPriority =
        priorities[std::clamp<int>(priority, DLOG_PRIORITY_DEBUG, DLOG_PRIORITY_ERROR) -
                   DLOG_PRIORITY_DEBUG];
    replaceControls(text, NewLines::kept);
    std::vector<std::string> fields{std::string("MESSAGE=").append(text),
                                    "PRIORITY=" + std::to_string(syslogPriority),
                                    std::string("SYSLOG_IDENTIFIER=") + tag};
    if (place.file != nullptr && place.function != nullptr) {
        fields.push_back(std::string("CODE_FILE=") + place.file);
        fields.push_back("CODE_LINE=" + std::to_string(place.line));
        fields.push_back(std::string("CODE_FUNC=") + place.function);
    }
    std::vector<iovec> vectors;
    vectors.reserve(fields.size());
    for (std::string& field : fields) {
        vectors.push_back({field.data(), field.size()});
    }
    return sd_journal_sendv(vectors.data(), static_cast<int>(vectors.size()));
}

int write(const LogDestination& destination, int priority, const char* tag, std::pmr::string& text,
          const Place& place) {
    return destination.isJournal ? sendToJournal(priority, tag, text, place)
                                 : writeLine(destination.fd, priority, tag, text);
}

int printTo(const LogDestination& destination, int priority, const char* tag, const char* format,
            va_list arguments) {
    const int error = errno;  // "%m" prints it
    va_list again;
    va_copy(again, arguments);
    const int size = std::vsnprintf(nullptr, 0, format, again);
    va_end(again);
    if (size < 0) {
        return -EINVAL;
    }
    // A line of usual length needs no other memory, so it can report that there is none.
    std::array<std::byte, 4096> memory;
    std::pmr::monotonic_buffer_resource resource(memory.data(), memory.size());
    std::pmr::string text(static_cast<std::size_t>(size), '\0', &resource);
    va_copy(again, arguments);
    errno = error;
    std::vsnprintf(text.data(), text.size() + 1, format, again);
    va_end(again);
    if (text.ends_with('\n')) {
        text.pop_back();
    }
    const int result = write(destination, priority, tag, text, placeOf(format, arguments));
    return result < 0 ? result : size;
}

struct Log {
    int level;
    LogDestination destination;
};

// Reports wrong settings at any level.
Log openLog() {
    auto complaints = settings().complaints;
    const auto destination = openLogDestination(settings(), complaints);
    for (const std::string& complaint : complaints) {
        std::pmr::string text(complaint);
        write(destination, DLOG_PRIORITY_ERROR, "SETTINGS", text, {});
    }
    return {settings().log.level, destination};
}

}  // namespace

int printLog(int priority, const char* tag, const char* format, va_list arguments) noexcept {
    if (format == nullptr) {
        return -EINVAL;
    }
    const int error = errno;
    int result = 0;
    try {
        static const Log log = openLog();
        if (priority >= log.level) {
            errno = error;
            result =
                printTo(log.destination, priority, tag == nullptr ? "" : tag, format, arguments);
        }
    } catch (const std::exception&) {
        result = -ENOMEM;
    }
    errno = error;
    return result;
}

}  // namespace corvane::host
