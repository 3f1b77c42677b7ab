// Platform log. In the journal a record has fields; elsewhere it is a line:
//     12:34:56.789 4711 I TAG: text
// Time is local, the number is the thread's, the letter is the priority's (D, I, W, E).
// Control characters in the line become spaces, so no record can pass for two.
#include "LogDestination.h"
#include "LogJournal.h"
#include "LogStream.h"
#include "PlatformApi.h"
#include "Settings.h"

#include <dlog.h>
#include <time.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdarg>
#include <cstddef>
#include <cstdio>
#include <exception>
#include <memory>

namespace corvane::host {

namespace {

char letterOf(int priority) {
    switch (priority) {
        case DLOG_PRIORITY_DEBUG:
            return 'D';
        case DLOG_PRIORITY_INFO:
            return 'I';
        case DLOG_PRIORITY_WARNING:
            return 'W';
        case DLOG_PRIORITY_ERROR:
            return 'E';
        default:
            return '?';
    }
}

int formatHead(char* buffer, std::size_t size, int priority, const char* tag) {
    timespec now{};
    clock_gettime(CLOCK_REALTIME, &now);
    tm local{};
    localtime_r(&now.tv_sec, &local);
    return std::snprintf(buffer, size, "%02d:%02d:%02d.%03ld %d %c %s: ", local.tm_hour,
                         local.tm_min, local.tm_sec, now.tv_nsec / 1000000,
                         static_cast<int>(gettid()), letterOf(priority), tag == nullptr ? "" : tag);
}

// The head belongs to a line; in the journal its parts are fields.
std::size_t formatHeadFor(const LogDestination& destination, char* buffer, std::size_t size,
                          int priority, const char* tag) {
    return destination.journal ? 0
                               : static_cast<std::size_t>(formatHead(buffer, size, priority, tag));
}

// Head and text are followed by a byte of no meaning.
int writeRecord(const LogDestination& destination, int priority, const char* tag, char* line,
                std::size_t headSize, std::size_t textSize) {
    char* const text = line + headSize;
    if (textSize > 0 && text[textSize - 1] == '\n') {
        --textSize;
    }
    if (destination.journal) {
        return sendToJournal(priority, tag, {text, textSize});
    }
    std::replace_if(
        line, text + textSize,
        [](char c) { return (static_cast<unsigned char>(c) < ' ' && c != '\t') || c == '\x7f'; },
        ' ');
    text[textSize] = '\n';
    return writeLogLine(destination.fd, line, headSize + textSize + 1);
}

int printTo(const LogDestination& destination, int priority, const char* tag, const char* format,
            va_list arguments) {
    const int errorBefore = errno;  // "%m" prints it, and logging must not change it
    std::array<char, 1024> line;
    const auto headSize = formatHeadFor(destination, line.data(), line.size(), priority, tag);
    const bool headFits = headSize < line.size();

    va_list again;
    va_copy(again, arguments);
    errno = errorBefore;
    const int text = std::vsnprintf(headFits ? line.data() + headSize : nullptr,
                                    headFits ? line.size() - headSize : 0, format, arguments);
    const auto textSize = static_cast<std::size_t>(text);
    int result = 0;
    if (text < 0) {
        result = -EINVAL;
    } else if (headSize + textSize < line.size()) {
        result = writeRecord(destination, priority, tag, line.data(), headSize, textSize);
    } else {
        const std::size_t size = headSize + textSize + 1;
        const std::unique_ptr<char[]> longLine(new char[size]);
        formatHeadFor(destination, longLine.get(), size, priority, tag);
        errno = errorBefore;
        std::vsnprintf(longLine.get() + headSize, textSize + 1, format, again);
        result = writeRecord(destination, priority, tag, longLine.get(), headSize, textSize);
    }
    va_end(again);
    errno = errorBefore;
    return result < 0 ? result : text;
}

struct Log {
    int level;
    LogDestination destination;
};

void complain(const LogDestination& destination, const char* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    printTo(destination, DLOG_PRIORITY_ERROR, "SETTINGS", format, arguments);
    va_end(arguments);
}

// What is wrong with the settings is said whatever the level.
Log openLog() {
    auto complaints = settings().complaints;
    const auto destination = openLogDestination(settings(), complaints);
    for (const auto& complaint : complaints) {
        complain(destination, "%s", complaint.c_str());
    }
    return {settings().log.level, destination};
}

int print(int priority, const char* tag, const char* format, va_list arguments) noexcept {
    if (format == nullptr) {
        return -EINVAL;
    }
    try {
        const int errorBefore = errno;
        static const Log log = openLog();
        errno = errorBefore;
        return priority < log.level ? 0
                                    : printTo(log.destination, priority, tag, format, arguments);
    } catch (const std::exception&) {
        return -ENOMEM;
    }
}

}  // namespace

}  // namespace corvane::host

PLATFORM_API int __dlog_print(int, int prio, const char* tag, const char* fmt, ...) {
    va_list arguments;
    va_start(arguments, fmt);
    const int result = corvane::host::print(prio, tag, fmt, arguments);
    va_end(arguments);
    return result;
}

PLATFORM_API int dlog_print(int prio, const char* tag, const char* fmt, ...) {
    va_list arguments;
    va_start(arguments, fmt);
    const int result = corvane::host::print(prio, tag, fmt, arguments);
    va_end(arguments);
    return result;
}
