// Replaces what the task context uses by the scheduler: its mutexes, condition variables, clock and
// log. On threads without a scheduler, the original functions are called.
#include <dlfcn.h>
#include <dlog.h>
#include <pthread.h>
#include <time.h>

#include <cstdarg>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>

#include "tests/daemon/model/Run.h"

using model::Run;
using model::Scheduler;
using model::Time;

namespace {

constexpr Time START = std::chrono::seconds(1000);  // CLOCK_MONOTONIC at the start of a run

template <typename Function>
Function next(const char* name) {
    return reinterpret_cast<Function>(dlsym(RTLD_NEXT, name));
}

#define NEXT(function) next<decltype(&function)>(#function)
#if __SIZEOF_LONG__ == 8
#define NEXT_WITH_TIME(function) NEXT(function)
#else  // the C library has another function for times of 64 bits
#define NEXT_WITH_TIME(function) next<decltype(&function)>("__" #function "64")
#endif

Scheduler::Mutex* driven(pthread_mutex_t* mutex) {
    return Scheduler::current() == nullptr ? nullptr : Run::current().mutexAt(mutex);
}

Time sinceStart(const timespec& time) {
    return std::chrono::seconds(time.tv_sec) + Time(time.tv_nsec) - START;
}

// Shortens "TPLContext.h : _InvokeJob(<line>)  task is queued\n" to "_InvokeJob  task is queued"
// and replaces the context's address by "this".
std::string normalised(std::string_view text) {
    constexpr std::string_view file = "TPLContext.h : ";
    const auto open = text.find('(');
    const auto close = text.find(')');
    if (!text.starts_with(file) || !text.ends_with('\n') || close == text.npos) {
        return "irregular: " + std::string(text);
    }
    std::string result(text.substr(file.size(), open - file.size()));
    result += text.substr(close + 1, text.size() - close - 2);
    char address[32];
    std::snprintf(address, sizeof address, "%p", Run::current().context());
    const auto place = result.find(address);
    return place == result.npos ? result
                                : result.replace(place, std::string(address).size(), "this");
}

}  // namespace

extern "C" int pthread_mutex_lock(pthread_mutex_t* mutex) noexcept {
    if (Scheduler::Mutex* const own = driven(mutex)) {
        Scheduler::current()->lock(*own);
        return 0;
    }
    static const auto original = NEXT(pthread_mutex_lock);
    return original(mutex);
}

extern "C" int pthread_mutex_unlock(pthread_mutex_t* mutex) noexcept {
    if (Scheduler::Mutex* const own = driven(mutex)) {
        Scheduler::current()->unlock(*own);
        return 0;
    }
    static const auto original = NEXT(pthread_mutex_unlock);
    return original(mutex);
}

extern "C" int pthread_cond_clockwait(pthread_cond_t* condition, pthread_mutex_t* mutex,
                                      clockid_t clock, const timespec* time) {
    if (Scheduler* const scheduler = Scheduler::current()) {
        // Release a mutex that the scheduler doesn't replace while other threads run.
        Scheduler::Mutex* const own = driven(mutex);
        if (own == nullptr) {
            pthread_mutex_unlock(mutex);
        }
        scheduler->wait(Run::current().conditionAt(condition), own, sinceStart(*time));
        if (own == nullptr) {
            pthread_mutex_lock(mutex);
        }
        return 0;
    }
    static const auto original = NEXT_WITH_TIME(pthread_cond_clockwait);
    return original(condition, mutex, clock, time);
}

extern "C" int pthread_cond_signal(pthread_cond_t* condition) noexcept {
    if (Scheduler* const scheduler = Scheduler::current()) {
        scheduler->notifyOne(Run::current().conditionAt(condition));
        return 0;
    }
    static const auto original = NEXT(pthread_cond_signal);
    return original(condition);
}

extern "C" int clock_gettime(clockid_t clock, timespec* time) noexcept {
    if (Scheduler* const scheduler = Scheduler::current(); scheduler && clock == CLOCK_MONOTONIC) {
        const Time now = START + scheduler->now();
        const auto seconds = std::chrono::duration_cast<std::chrono::seconds>(now);
        time->tv_sec = static_cast<time_t>(seconds.count());
        time->tv_nsec = static_cast<long>((now - seconds).count());
        return 0;
    }
    static const auto original = NEXT_WITH_TIME(clock_gettime);
    return original(clock, time);
}

#if __SIZEOF_LONG__ == 4
// The C++ library may have been built with times of 32 bits.
struct ShortTime {
    std::int32_t seconds;
    std::int32_t nanoseconds;
};
extern "C" int getShortTime(clockid_t clock, ShortTime* time) noexcept __asm__("clock_gettime");
extern "C" int getShortTime(clockid_t clock, ShortTime* time) noexcept {
    timespec whole{};
    const int result = clock_gettime(clock, &whole);
    *time = {static_cast<std::int32_t>(whole.tv_sec), static_cast<std::int32_t>(whole.tv_nsec)};
    return result;
}
#endif

int dlog_print(int priority, const char* tag, const char* format, ...) {
    char text[256];
    va_list arguments;
    va_start(arguments, format);
    const int length = vsnprintf(text, sizeof text, format, arguments);
    va_end(arguments);
    if (Scheduler::current() != nullptr) {
        const bool isRegular = std::string_view(tag) == "QVX_TPL_CONTEXT" &&
                               (priority == DLOG_PRIORITY_DEBUG || priority == DLOG_PRIORITY_ERROR);
        Run::current().line(!isRegular                        ? '?'
                            : priority == DLOG_PRIORITY_DEBUG ? 'D'
                                                              : 'E',
                            normalised(text));
    }
    return length;
}
