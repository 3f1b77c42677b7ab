// The log's way to format against the C library's.
#include <gtest/gtest.h>

#include <array>
#include <cerrno>
#include <climits>
#include <cstdarg>
#include <cstdio>
#include <random>
#include <string>

#include "platform/host/dlog/FormatText.h"

namespace {

constexpr char untouched = '#';

struct Formatted {
    int result;
    std::string buffer;
    bool operator==(const Formatted&) const = default;
};

std::ostream& operator<<(std::ostream& stream, const Formatted& formatted) {
    return stream << formatted.result << ' ' << testing::PrintToString(formatted.buffer);
}

template <typename Format>
Formatted formatted(Format format, std::size_t size, const char* text, va_list arguments) {
    std::string buffer(size, untouched);
    va_list copy;
    va_copy(copy, arguments);
    errno = ENOENT;
    const int result = format(size == 0 ? nullptr : buffer.data(), size, text, copy);
    va_end(copy);
    // Behind its end a buffer is nobody's business.
    const auto end = buffer.find('\0');
    return {result, end == buffer.npos ? buffer : buffer.substr(0, end)};
}

// Variadic, so that the compiler doesn't see the formats.
void compare(std::size_t size, const char* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    EXPECT_EQ(formatted(corvane::host::formatText, size, format, arguments),
              formatted(std::vsnprintf, size, format, arguments))
        << format << " in " << size;
    va_end(arguments);
}

void compareInAnyRoom(const char* format, auto... arguments) {
    for (std::size_t size = 0; size < 100; ++size) {
        compare(size, format, arguments...);
    }
}

TEST(FormatTextTest, IsThatOfTheCLibraryInAnyRoom) {
    static const int object = 0;
    const char* const noString = nullptr;
    const void* const noObject = nullptr;
    compareInAnyRoom("");
    compareInAnyRoom("plain text");
    compareInAnyRoom("%%");
    compareInAnyRoom("%s: %s(%d) > IN >> [%s(%d)]", "log.h", "ApiTracker", 48, "void f()", 22);
    compareInAnyRoom("%s : %s(%d) [%p] > Entered\n", "TPLContext.h", "InvokeTask", 1, &object);
    compareInAnyRoom("%s %p", noString, noObject);
    compareInAnyRoom("%s", "");
    compareInAnyRoom("%d %d %d", INT_MIN, INT_MAX, 0);
}

TEST(FormatTextTest, LeavesWhatItDoesNotKnowToTheCLibraryFromTheStart) {
    compareInAnyRoom("%s %5d|%-5d|%05d|%+d", "first", 1, 2, 3, 4);
    compareInAnyRoom("%s %.2s %*d", "first", "cut", 4, 5);
    compareInAnyRoom("%d %ld %llu %zu %x %#x %c", 1, 2L, 3ULL, std::size_t{4}, 5U, 6U, '7');
    compareInAnyRoom("%s %f %g %a", "first", 1.5, 2.5, 3.5);
    compareInAnyRoom("%s %m", "first");
    compareInAnyRoom("%2$s %1$s", "first", "second");
    compareInAnyRoom("%");
    compareInAnyRoom("%s %", "first");
}

TEST(FormatTextTest, IsThatOfTheCLibraryForRandomFormats) {
    std::mt19937 random(1);
    const std::array<const char*, 6> pieces{"%d", "%%", "text", "\n", "%5d", "(%d)"};
    for (int round = 0; round < 20000; ++round) {
        std::string format = "%s|%s";
        for (auto count = random() % 8; count > 0; --count) {
            format += pieces[random() % pieces.size()];
        }
        const auto number = [&random] { return static_cast<int>(random()); };
        compare(random() % 120, format.c_str(), "some", "strings", number(), number(), number(),
                number(), number(), number(), number(), number());
    }
}

}  // namespace
