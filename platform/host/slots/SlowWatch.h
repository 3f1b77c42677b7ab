// The warning about a callback, or a set or unset call, that takes too long.
#pragma once

#include <chrono>

#include "platform/host/PlatformApi.h"

namespace corvane::host {

/// Writes a warning if `what` (the callback, or a call of the platform) took longer than the
/// limit in the settings.
PLATFORM_SHARED void reportIfSlow(const char* event, const char* what,
                                  std::chrono::steady_clock::duration duration);

/// Measures the time from its construction to its destruction.
class SlowWatch {
public:
    SlowWatch(const char* event, const char* what) : m_event(event), m_what(what) {}
    ~SlowWatch() { reportIfSlow(m_event, m_what, std::chrono::steady_clock::now() - m_start); }
    SlowWatch(const SlowWatch&) = delete;
    SlowWatch& operator=(const SlowWatch&) = delete;

private:
    const char* m_event;
    const char* m_what;
    const std::chrono::steady_clock::time_point m_start = std::chrono::steady_clock::now();
};

}  // namespace corvane::host
