// The one callback, with its user data, that the platform keeps for each kind of
// event, and the pair of C functions that sets and clears it. A slot is named by
// the address of its set function: slotOf<&bt_adapter_set_state_changed_cb>.
#pragma once

#include "PlatformApi.h"
#include "SlotObserver.h"

#include <bluetooth.h>
#include <bluetooth_tv.h>
#include <sound_manager_tv.h>

#include <cerrno>
#include <mutex>

namespace corvane::host {

template <typename Callback>
class CallbackSlot;

/// Owner: the library, for the life of the process. Threads: every operation may run on
/// any thread, also inside the callback, which is called without a lock held. A callback
/// just replaced or cleared by one thread may still be running on another.
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
        }
        if (callback != nullptr) {
            const SlowWatch watch(m_event, "callback");
            callback(arguments..., userData);
        }
        const unsigned called = callback == nullptr ? 0 : 1;
        observeSlot(SlotChange::Delivered, m_event, called);
        return called;
    }

private:
    std::mutex m_mutex;
    const char* m_event = "";
    Callback m_callback = nullptr;
    void* m_userData = nullptr;
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
#include "Slots.def"
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
