// Platform log. In the journal a record has fields; elsewhere it is a line:
//     12:34:56.789 4711 I TAG: text
// Time is local, the number is the thread's, the letter is the priority's (D, I, W, E).
// Control characters in the line become spaces, so no record can pass for two.
#include <dlog.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdarg>
#include <cstddef>
#include <cstdio>
#include <exception>
#include <memory>
#include <string_view>

#include "platform/host/dlog/Controls.h"
#include "platform/host/dlog/FormatText.h"
#include "platform/host/dlog/LineHead.h"
#include "platform/host/dlog/LogBuffer.h"
#include "platform/host/dlog/LogDestination.h"
#include "platform/host/dlog/LogJournal.h"
#include "platform/host/dlog/LogStream.h"
#include "platform/host/libraries/PlatformApi.h"
#include "platform/host/settings/Settings.h"

namespace corvane::host {

namespace {

int writeTo(const LogDestination& destination, int priority, const char* line, std::size_t size) {
    return destination.buffer == nullptr
               ? writeLogLines(destination.fd, line, size)
               : destination.buffer->add(line, size, priority >= DLOG_PRIORITY_ERROR);
}

/// Where the parts of a line end. In the journal all but the text are fields.
struct Parts {
    std::size_t start;  // time, thread, priority
    std::size_t head;   // tag and colon
};

// The parts are followed by the text, and that by a byte of no meaning.
int writeRecord(const LogDestination& destination, int priority, const char* tag, char* line,
                const Parts& parts, std::size_t textSize, const LogPlace& place) {
    char* const text = line + parts.head;
    if (textSize > 0 && text[textSize - 1] == '\n') {
        --textSize;
    }
    if (destination.journal) {
        replaceControls(text, textSize, NewLines::kept);
        return sendToJournal(priority, tag, {text, textSize}, place);
    }
    replaceControls(line + parts.start, parts.head - parts.start + textSize, NewLines::replaced);
    text[textSize] = '\n';
    return writeTo(destination, priority, line, parts.head + textSize + 1);
}

void addTag(char* at, std::string_view tag) {
    at = std::copy(tag.begin(), tag.end(), at);
    at[0] = ':';
    at[1] = ' ';
}

// The place in the source that the daemon's log header puts in front of its lines.
LogPlace placeOf(std::string_view format, va_list arguments) {
    if (!format.starts_with("%s: %s(%d) > ")) {
        return {};
    }
    va_list again;
    va_copy(again, arguments);
    const char* const file = va_arg(again, const char*);
    const char* const function = va_arg(again, const char*);
    const LogPlace place{file, function, va_arg(again, int)};
    va_end(again);
    return place;
}

int printTo(const LogDestination& destination, int priority, const char* tag, const char* format,
            va_list arguments) {
    const int errorBefore = errno;  // "%m" prints it, and logging must not change it
    std::array<char, 1024> line;
    const std::string_view tagText = tag == nullptr ? "" : tag;
    const LogPlace place = destination.journal ? placeOf(format, arguments) : LogPlace{};
    Parts parts{0, 0};
    bool headFits = true;
    if (!destination.journal) {
        parts.start = formatHead(line.data(), priority);
        parts.head = parts.start + tagText.size() + 2;
        headFits = parts.head < line.size();
        if (headFits) {
            addTag(line.data() + parts.start, tagText);
        }
    }

    va_list again;
    va_copy(again, arguments);
    errno = errorBefore;
    const int text = formatText(headFits ? line.data() + parts.head : nullptr,
                                headFits ? line.size() - parts.head : 0, format, arguments);
    const auto textSize = static_cast<std::size_t>(text);
    int result = 0;
    if (text < 0) {
        result = -EINVAL;
    } else if (parts.head + textSize < line.size()) {
        result = writeRecord(destination, priority, tag, line.data(), parts, textSize, place);
    } else {
        const std::unique_ptr<char[]> longLine(new char[parts.head + textSize + 1]);
        if (!destination.journal) {
            std::copy_n(line.data(), parts.start, longLine.get());
            addTag(longLine.get() + parts.start, tagText);
        }
        errno = errorBefore;
        std::vsnprintf(longLine.get() + parts.head, textSize + 1, format, again);
        result = writeRecord(destination, priority, tag, longLine.get(), parts, textSize, place);
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
