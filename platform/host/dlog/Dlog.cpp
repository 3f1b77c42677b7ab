// Platform log on the standard error, one line for each record:
//     12:34:56.789 4711 I TAG: text
// Time is local, the number is the thread's, the letter is the priority's (D, I, W, E).
// Control characters in the text become spaces, so no record can pass for two.
#include "LogLevel.h"
#include "LogStream.h"
#include "PlatformApi.h"

#include <dlog.h>
#include <time.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdarg>
#include <cstddef>
#include <cstdio>
#include <memory>
#include <new>

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

// Makes head and text, both followed by a byte of no meaning, one line and writes it.
int writeLine(char* line, std::size_t headSize, std::size_t textSize) {
    char* const text = line + headSize;
    if (textSize > 0 && text[textSize - 1] == '\n') {
        --textSize;
    }
    std::replace_if(
        line, text + textSize,
        [](char c) { return (static_cast<unsigned char>(c) < ' ' && c != '\t') || c == '\x7f'; },
        ' ');
    text[textSize] = '\n';
    return writeStandardError(line, headSize + textSize + 1);
}

int print(int priority, const char* tag, const char* format, va_list arguments) {
    if (format == nullptr) {
        return -EINVAL;
    }
    if (priority < minimumPriority()) {
        return 0;
    }
    const int errorBefore = errno;  // "%m" prints it, and logging must not change it
    std::array<char, 1024> line;
    const int head = formatHead(line.data(), line.size(), priority, tag);
    const auto headSize = static_cast<std::size_t>(head);
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
        result = writeLine(line.data(), headSize, textSize);
    } else {
        const std::size_t size = headSize + textSize + 1;
        const std::unique_ptr<char[]> longLine(new (std::nothrow) char[size]);
        if (longLine == nullptr) {
            result = -ENOMEM;
        } else {
            formatHead(longLine.get(), size, priority, tag);
            errno = errorBefore;
            std::vsnprintf(longLine.get() + headSize, textSize + 1, format, again);
            result = writeLine(longLine.get(), headSize, textSize);
        }
    }
    va_end(again);
    errno = errorBefore;
    return result < 0 ? result : text;
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
