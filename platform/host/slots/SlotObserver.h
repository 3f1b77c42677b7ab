// What happens to the slots, for those who watch, and callbacks that take too long.
#pragma once

#include <atomic>
#include <chrono>

#include "platform/host/libraries/PlatformApi.h"

namespace corvane::host {

enum class SlotChange { Set, Unset, Delivered };

/// Called on the thread of the change, with a lock held for Set and Unset: it must neither
/// touch a slot nor throw. `called` is the number of callbacks called.
using SlotObserver = void (*)(void* data, SlotChange change, const char* event, unsigned called);

/// The one observer, or null. After the return no thread is inside the one before.
PLATFORM_SHARED void setSlotObserver(SlotObserver observer, void* data);

PLATFORM_SHARED extern std::atomic<bool> slotsAreObserved;
PLATFORM_SHARED void tellSlotObserver(SlotChange change, const char* event, unsigned called);

inline void observeSlot(SlotChange change, const char* event, unsigned called = 0) {
    if (slotsAreObserved.load(std::memory_order_acquire)) {
        tellSlotObserver(change, event, called);
    }
}

/// Writes a warning if `what` (the callback, or a call of ours) took longer than the limit
/// in the settings.
PLATFORM_SHARED void reportIfSlow(const char* event, const char* what,
                                  std::chrono::steady_clock::duration duration);

/// Times its own life.
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
