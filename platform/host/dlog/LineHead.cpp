// Local time changes once in a second and a thread's number never, so each thread keeps both as
// text.
#include "LineHead.h"

#include <dlog.h>
#include <pthread.h>
#include <time.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <charconv>
#include <cstdio>

namespace corvane::host {

namespace {

// The thread that goes on in a child process has another number there.
std::atomic<unsigned> forks = 0;

struct ThreadText {
    time_t second = -1;
    std::array<char, 16> time{};  // "12:34:56."
    unsigned forks = 0;
    int numberSize = 0;
    std::array<char, 12> number{};
};

constexpr std::size_t timeSize = 9;

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

void setTime(ThreadText& text, time_t second) {
    tm local{};
    localtime_r(&second, &local);
    std::snprintf(text.time.data(), text.time.size(), "%02d:%02d:%02d.", local.tm_hour,
                  local.tm_min, local.tm_sec);
    text.second = second;
}

void setNumber(ThreadText& text, unsigned forksBefore) {
    [[maybe_unused]] static const int watching =
        pthread_atfork(nullptr, nullptr, [] { forks.fetch_add(1); });
    char* const start = text.number.data();
    text.numberSize =
        static_cast<int>(std::to_chars(start, start + text.number.size(), gettid()).ptr - start);
    text.forks = forksBefore;
}

}  // namespace

std::size_t formatHead(LineHead& head, int priority) noexcept {
    thread_local constinit ThreadText text;
    timespec now{};
    clock_gettime(CLOCK_REALTIME, &now);
    if (text.second != now.tv_sec) {
        setTime(text, now.tv_sec);
    }
    const unsigned forksBefore = forks.load(std::memory_order_relaxed);
    if (text.numberSize == 0 || text.forks != forksBefore) {
        setNumber(text, forksBefore);
    }

    char* next = std::copy_n(text.time.data(), timeSize, head.data());
    const auto milliseconds = static_cast<int>(now.tv_nsec / 1000000);
    for (const int unit : {100, 10, 1}) {
        *next++ = static_cast<char>('0' + milliseconds / unit % 10);
    }
    *next++ = ' ';
    std::copy_n(text.number.data(), text.number.size(), next);  // of a constant size, so no call
    next += text.numberSize;
    for (const char c : {' ', letterOf(priority), ' '}) {
        *next++ = c;
    }
    return static_cast<std::size_t>(next - head.data());
}

}  // namespace corvane::host
