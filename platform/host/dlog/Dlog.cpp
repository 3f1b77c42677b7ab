// Platform log. In the journal a record has fields; elsewhere it is a line:
//     12:34:56.789 4711 I TAG: text
// Time is local, the number is the thread's, the letter is the priority's (D, I, W, E).
// Control characters in the line become spaces, so no record can pass for two.
#include "FormatText.h"
#include "LineHead.h"
#include "LogBuffer.h"
#include "LogDestination.h"
#include "LogJournal.h"
#include "LogStream.h"
#include "PlatformApi.h"
#include "Settings.h"

#include <dlog.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdarg>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <exception>
#include <memory>
#include <string_view>

namespace corvane::host {

namespace {

bool isControl(char c) {
    return (static_cast<unsigned char>(c) < ' ' && c != '\t') || c == '\x7f';
}

// Whether there may be one among them: a tab is taken for one. Eight at a time, the last eight
// perhaps once more.
bool mayHaveControls(const char* text, std::size_t size) {
    constexpr std::uint64_t each = 0x0101010101010101;
    if (size < sizeof each) {
        return std::any_of(text, text + size, isControl);
    }
    std::uint64_t found = 0;
    const auto look = [&found](const char* at) {
        std::uint64_t word;
        std::memcpy(&word, at, sizeof word);
        const std::uint64_t deleted = word ^ each * 0x7f;
        found |= ((word - each * ' ') & ~word) | ((deleted - each) & ~deleted);
    };
    const char* const last = text + size - sizeof each;
    for (; text < last; text += sizeof each) {
        look(text);
    }
    look(last);
    return (found & each * 0x80) != 0;
}

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
                const Parts& parts, std::size_t textSize) {
    char* const text = line + parts.head;
    if (textSize > 0 && text[textSize - 1] == '\n') {
        --textSize;
    }
    if (destination.journal) {
        return sendToJournal(priority, tag, {text, textSize});
    }
    if (mayHaveControls(line + parts.start, parts.head - parts.start + textSize)) {
        std::replace_if(line + parts.start, text + textSize, isControl, ' ');
    }
    text[textSize] = '\n';
    return writeTo(destination, priority, line, parts.head + textSize + 1);
}

void addTag(char* at, std::string_view tag) {
    at = std::copy(tag.begin(), tag.end(), at);
    at[0] = ':';
    at[1] = ' ';
}

int printTo(const LogDestination& destination, int priority, const char* tag, const char* format,
            va_list arguments) {
    const int errorBefore = errno;  // "%m" prints it, and logging must not change it
    std::array<char, 1024> line;
    const std::string_view tagText = tag == nullptr ? "" : tag;
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
        result = writeRecord(destination, priority, tag, line.data(), parts, textSize);
    } else {
        const std::unique_ptr<char[]> longLine(new char[parts.head + textSize + 1]);
        if (!destination.journal) {
            std::copy_n(line.data(), parts.start, longLine.get());
            addTag(longLine.get() + parts.start, tagText);
        }
        errno = errorBefore;
        std::vsnprintf(longLine.get() + parts.head, textSize + 1, format, again);
        result = writeRecord(destination, priority, tag, longLine.get(), parts, textSize);
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
