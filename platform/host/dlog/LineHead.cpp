// Local time changes once in a second and a thread's number never, so each thread keeps both as
// text.
#include "platform/host/dlog/LineHead.h"

#include <dlog.h>
#include <pthread.h>
#include <time.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <charconv>
#include <cstdio>

namespace corvane::host {

namespace {

// The thread that goes on in a child process has another number there.
std::atomic<unsigned> forks = 0;

struct ThreadText {
    time_t second = -1;
    long millisecond = -1;
    unsigned forks = 0;
    std::size_t size = 0;
    std::array<char, HEAD_ROOM> text{};  // "12:34:56.789 4711 "
};

constexpr std::size_t millisecondsAt = 9;
constexpr std::size_t numberAt = 13;

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

void setSecond(ThreadText& text, time_t second) {
    tm local{};
    localtime_r(&second, &local);
    std::array<char, 16> time;
    std::snprintf(time.data(), time.size(), "%02d:%02d:%02d.", local.tm_hour, local.tm_min,
                  local.tm_sec);
    std::copy_n(time.data(), millisecondsAt, text.text.data());
    text.second = second;
}

void setMillisecond(ThreadText& text, long millisecond) {
    char* next = text.text.data() + millisecondsAt;
    for (const int unit : {100, 10, 1}) {
        *next++ = static_cast<char>('0' + millisecond / unit % 10);
    }
    *next = ' ';
    text.millisecond = millisecond;
}

void setNumber(ThreadText& text, unsigned forksBefore) {
    [[maybe_unused]] static const int watching =
        pthread_atfork(nullptr, nullptr, [] { forks.fetch_add(1); });
    char* const end = std::to_chars(text.text.data() + numberAt, text.text.end(), gettid()).ptr;
    *end = ' ';
    text.size = static_cast<std::size_t>(end + 1 - text.text.data());
    text.forks = forksBefore;
}

}  // namespace

std::size_t formatHead(char* line, int priority) noexcept {
    thread_local constinit ThreadText text;
    timespec now{};
    clock_gettime(CLOCK_REALTIME, &now);
    if (text.second != now.tv_sec) {
        setSecond(text, now.tv_sec);
    }
    if (const long millisecond = now.tv_nsec / 1000000; text.millisecond != millisecond) {
        setMillisecond(text, millisecond);
    }
    const unsigned forksBefore = forks.load(std::memory_order_relaxed);
    if (text.size == 0 || text.forks != forksBefore) {
        setNumber(text, forksBefore);
    }
    std::copy_n(text.text.data(), HEAD_ROOM, line);
    line[text.size] = letterOf(priority);
    line[text.size + 1] = ' ';
    return text.size + 2;
}

}  // namespace corvane::host
