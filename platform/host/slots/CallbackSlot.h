// The one callback, with its user data, that the platform keeps for each kind of
// event, and the pair of C functions that sets and clears it. A slot is named by
// the address of its set function: slotOf<&bt_adapter_set_state_changed_cb>.
#pragma once

#include <bluetooth.h>
#include <bluetooth_tv.h>
#include <pthread.h>
#include <sound_manager_tv.h>
#include <time.h>

#include <cerrno>
#include <mutex>

#include "platform/host/libraries/PlatformApi.h"
#include "platform/host/slots/SlotObserver.h"

namespace corvane::host {

template <typename Callback>
class CallbackSlot;

/// Owner: the library, for the life of the process. Threads: every operation may run on
/// any thread, also inside the callback, which is called without a lock held. A callback
/// just replaced by one thread may still be running on another. Clearing waits for those on
/// other threads, so that its owner may go, but not for long: they may be waiting for the
/// thread that clears.
/// Errors: what the callback throws passes through deliver().
template <typename... All>
class CallbackSlot<void (*)(All...)> {
public:
    using Callback = void (*)(All...);

    constexpr CallbackSlot() = default;
    constexpr explicit CallbackSlot(const char* event) : m_event(event) {}
    CallbackSlot(const CallbackSlot&) = delete;
    CallbackSlot& operator=(const CallbackSlot&) = delete;

    int set(Callback callback, void* userData) {
        if (callback == nullptr) {
            return -EINVAL;
        }
        const std::lock_guard lock(m_mutex);
        m_callback = callback;
        m_userData = userData;
        observeSlot(SlotChange::Set, m_event);
        return 0;
    }

    int unset() {
        const std::lock_guard lock(m_mutex);
        m_callback = nullptr;
        m_userData = nullptr;
        observeSlot(SlotChange::Unset, m_event);
        waitForOthers(Running::countOf(this));
        return 0;
    }

    const char* event() const { return m_event; }

    bool isSet() {
        const std::lock_guard lock(m_mutex);
        return m_callback != nullptr;
    }

    /// Calls the callback, if one is set, with `arguments` and its user data. Returns the
    /// number of callbacks called.
    template <typename... Args>
    unsigned deliver(Args... arguments) {
        Callback callback;
        void* userData;
        {
            const std::lock_guard lock(m_mutex);
            callback = m_callback;
            userData = m_userData;
            m_running += callback == nullptr ? 0 : 1;
        }
        if (callback != nullptr) {
            const Running running(*this);
            const SlowWatch watch(m_event, "callback");
            callback(arguments..., userData);
        }
        const unsigned called = callback == nullptr ? 0 : 1;
        observeSlot(SlotChange::Delivered, m_event, called);
        return called;
    }

private:
    /// A call of the callback, which has been counted already. Those of one thread are in one
    /// another.
    class Running {
    public:
        explicit Running(CallbackSlot& slot) : m_slot(slot), m_outer(innermost) {
            innermost = this;
        }
        ~Running() {
            innermost = m_outer;
            const std::lock_guard lock(m_slot.m_mutex);
            --m_slot.m_running;
            pthread_cond_broadcast(&m_slot.m_left);
        }
        Running(const Running&) = delete;
        Running& operator=(const Running&) = delete;

        /// Of this thread.
        static unsigned countOf(const CallbackSlot* slot) {
            unsigned count = 0;
            for (const Running* running = innermost; running != nullptr;
                 running = running->m_outer) {
                count += &running->m_slot == slot ? 1 : 0;
            }
            return count;
        }

    private:
        CallbackSlot& m_slot;
        Running* m_outer;
        static inline thread_local Running* innermost = nullptr;
    };

    // Under the mutex, which is let go meanwhile.
    void waitForOthers(unsigned own) {
        constexpr long PATIENCE_NS = 100'000'000;
        constexpr long SECOND_NS = 1'000'000'000;
        timespec end{};
        clock_gettime(CLOCK_MONOTONIC, &end);
        end.tv_sec += (end.tv_nsec + PATIENCE_NS) / SECOND_NS;
        end.tv_nsec = (end.tv_nsec + PATIENCE_NS) % SECOND_NS;
        while (m_running > own && pthread_cond_clockwait(&m_left, m_mutex.native_handle(),
                                                         CLOCK_MONOTONIC, &end) == 0) {
        }
    }

    std::mutex m_mutex;
    pthread_cond_t m_left = PTHREAD_COND_INITIALIZER;  // made before the program starts
    const char* m_event = "";
    Callback m_callback = nullptr;
    void* m_userData = nullptr;
    unsigned m_running = 0;
};

template <typename SetFunction>
struct SetterTraits;

template <typename CallbackType>
struct SetterTraits<int (*)(CallbackType, void*)> {
    using Callback = CallbackType;
};

template <auto setFunction>
using CallbackOf = typename SetterTraits<decltype(setFunction)>::Callback;

// The slots of all the platform libraries are in one of them, with what feeds them.
template <auto setFunction>
struct SlotHolder;

#define SLOT(setFunction, event)                                            \
    template <>                                                             \
    struct SlotHolder<&setFunction> {                                       \
        PLATFORM_SHARED static CallbackSlot<CallbackOf<&setFunction>> slot; \
    };
#include "platform/host/slots/Slots.def"
#undef SLOT

template <auto setFunction>
inline constexpr auto& slotOf = SlotHolder<setFunction>::slot;

}  // namespace corvane::host

// Defines both C functions of one kind of event.
#define CALLBACK_PAIR(setFunction, unsetFunction)                                  \
    PLATFORM_API int setFunction(corvane::host::CallbackOf<&setFunction> callback, \
                                 void* userData) {                                 \
        auto& slot = corvane::host::slotOf<&setFunction>;                          \
        const corvane::host::SlowWatch watch(slot.event(), "set call");            \
        return slot.set(callback, userData);                                       \
    }                                                                              \
    PLATFORM_API int unsetFunction() {                                             \
        auto& slot = corvane::host::slotOf<&setFunction>;                          \
        const corvane::host::SlowWatch watch(slot.event(), "unset call");          \
        return slot.unset();                                                       \
    }
