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

// Whether there may be one among them: a tab is taken for one. Eight at a time.
bool mayHaveControls(const char* text, std::size_t size) {
    constexpr std::uint64_t each = 0x0101010101010101;
    std::uint64_t found = 0;
    for (; size >= sizeof found; text += sizeof found, size -= sizeof found) {
        std::uint64_t word;
        std::memcpy(&word, text, sizeof word);
        const std::uint64_t deleted = word ^ each * 0x7f;
        found |= ((word - each * ' ') & ~word) | ((deleted - each) & ~deleted);
    }
    return (found & each * 0x80) != 0 || std::any_of(text, text + size, isControl);
}

int writeTo(const LogDestination& destination, int priority, const char* line, std::size_t size) {
    return destination.buffer == nullptr
               ? writeLogLines(destination.fd, line, size)
               : destination.buffer->add(line, size, priority >= DLOG_PRIORITY_ERROR);
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
    if (mayHaveControls(line, headSize + textSize)) {
        std::replace_if(line, text + textSize, isControl, ' ');
    }
    text[textSize] = '\n';
    return writeTo(destination, priority, line, headSize + textSize + 1);
}

/// What a line has before its text; in the journal these parts are fields.
class Head {
public:
    Head(const LogDestination& destination, int priority, const char* tag) {
        if (!destination.journal) {
            m_size = formatHead(m_start, priority);
            m_tag = tag == nullptr ? "" : tag;
            m_end = ": ";
        }
    }

    std::size_t size() const { return m_size + m_tag.size() + m_end.size(); }

    void copyTo(char* line) const {
        line = std::copy_n(m_start.data(), m_size, line);
        line = std::copy(m_tag.begin(), m_tag.end(), line);
        std::copy(m_end.begin(), m_end.end(), line);
    }

private:
    LineHead m_start;
    std::size_t m_size = 0;
    std::string_view m_tag;
    std::string_view m_end;
};

int printTo(const LogDestination& destination, int priority, const char* tag, const char* format,
            va_list arguments) {
    const int errorBefore = errno;  // "%m" prints it, and logging must not change it
    std::array<char, 1024> line;
    const Head head(destination, priority, tag);
    const std::size_t headSize = head.size();
    const bool headFits = headSize < line.size();

    va_list again;
    va_copy(again, arguments);
    errno = errorBefore;
    const int text = formatText(headFits ? line.data() + headSize : nullptr,
                                headFits ? line.size() - headSize : 0, format, arguments);
    const auto textSize = static_cast<std::size_t>(text);
    int result = 0;
    if (text < 0) {
        result = -EINVAL;
    } else if (headSize + textSize < line.size()) {
        head.copyTo(line.data());
        result = writeRecord(destination, priority, tag, line.data(), headSize, textSize);
    } else {
        const std::size_t size = headSize + textSize + 1;
        const std::unique_ptr<char[]> longLine(new char[size]);
        head.copyTo(longLine.get());
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
