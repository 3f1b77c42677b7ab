// The one callback, with its user data, that the platform keeps for each kind of event,
// whatever its type; and the observer of all slots.
#pragma once

#include <pthread.h>

#include <mutex>

#include "platform/host/PlatformApi.h"

namespace corvane::host {

enum class SlotChange { Set, Unset, Delivered };

/// Called on the thread of the change, with a lock held for Set and Unset: it must neither
/// touch a slot nor throw. `called` is the number of callbacks called.
using SlotObserver = void (*)(void* data, SlotChange change, const char* event, unsigned called);

/// Sets the one observer, or none (null). Waits until no thread is inside the previous one.
PLATFORM_SHARED void setSlotObserver(SlotObserver observer, void* data);

/// Owner: the core library, for the life of the process. Threads: every operation may run on
/// any thread, also inside the callback, which is called without a lock held. A callback
/// just replaced by one thread may still be running on another. Clearing waits for calls on
/// other threads, so that their owner may be destroyed, but at most 100 ms: they may be waiting
/// for the thread that clears.
/// Errors: none of its own.
class PLATFORM_SHARED Slot {
public:
    using AnyFunction = void (*)();

    constexpr explicit Slot(const char* event) : m_event(event) {}
    Slot(const Slot&) = delete;
    Slot& operator=(const Slot&) = delete;

    int unset();
    bool isSet();
    const char* event() const { return m_event; }

protected:
    int set(AnyFunction callback, void* userData);

    /// After a delivery; `called` is the number of callbacks called.
    void tellDelivered(unsigned called);

    /// One call of the callback, from construction to destruction on one thread. Calls of one
    /// thread nest.
    class PLATFORM_SHARED Call {
    public:
        explicit Call(Slot& slot);
        ~Call();
        Call(const Call&) = delete;
        Call& operator=(const Call&) = delete;

        AnyFunction callback() const { return m_callback; }  // null if none is set
        void* userData() const { return m_userData; }

    private:
        friend class Slot;

        static unsigned countOnThisThread(const Slot& slot);
        static thread_local Call* innermost;

        Slot& m_slot;
        AnyFunction m_callback;
        void* m_userData;
        Call* m_outer = nullptr;  // the call on this thread in which this one is nested
    };

private:
    /// Call with m_mutex held; it is released while waiting.
    void waitForOtherThreads();

    std::mutex m_mutex;
    pthread_cond_t m_callEnded = PTHREAD_COND_INITIALIZER;  // constant, unlike the class of std
    const char* m_event;
    AnyFunction m_callback = nullptr;
    void* m_userData = nullptr;
    unsigned m_running = 0;
};

}  // namespace corvane::host
