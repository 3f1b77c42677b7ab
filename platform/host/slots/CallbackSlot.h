// The slots by the types of their callbacks. A slot is named by the address of its set
// function: slotOf<&bt_adapter_set_state_changed_cb>.deliver(0, BT_ADAPTER_STATE_ON).
#pragma once

#include "platform/host/events/EventTable.h"
#include "platform/host/events/EventTypes.h"
#include "platform/host/slots/Slot.h"
#include "platform/host/slots/SlowWatch.h"

namespace corvane::host {

template <typename Callback>
class CallbackSlot;

/// Owner, threads: see Slot. Errors: what the callback throws passes through deliver().
template <typename... All>
class CallbackSlot<void (*)(All...)> : public Slot {
public:
    using Callback = void (*)(All...);

    constexpr explicit CallbackSlot(const char* event = "") : Slot(event) {}

    int set(Callback callback, void* userData) {
        return Slot::set(reinterpret_cast<AnyFunction>(callback), userData);
    }

    /// Calls the callback, if one is set, with `arguments` and its user data. Returns the
    /// number of callbacks called.
    template <typename... Args>
    unsigned deliver(Args... arguments) {
        const unsigned called = call(arguments...);
        tellDelivered(called);
        return called;
    }

private:
    template <typename... Args>
    unsigned call(Args... arguments) {
        const Call running(*this);
        if (running.callback() == nullptr) {
            return 0;
        }
        const SlowWatch watch(event(), "callback");
        reinterpret_cast<Callback>(running.callback())(arguments..., running.userData());
        return 1;
    }
};

/// The slot of one set function. Reached by a function, not a variable, so that a program that
/// holds the platform itself can be in a process with the libraries.
template <auto setFunction>
struct SlotOf {
    static CallbackSlot<CallbackOf<setFunction>>& get();

    template <typename... Args>
    unsigned deliver(Args... arguments) const {
        return get().deliver(arguments...);
    }
    bool isSet() const { return get().isSet(); }
};

template <auto setFunction>
inline constexpr SlotOf<setFunction> slotOf;

#define EVENT(library, name, setFunction, unsetFunction, meaning, ...) \
    template <>                                                        \
    PLATFORM_SHARED CallbackSlot<CallbackOf<&setFunction>>& SlotOf<&setFunction>::get();
#include "platform/host/events/Events.def"
#undef EVENT

/// Whether a callback is set for an event of the table.
bool callbackIsSet(const Event& event);

/// What the C functions of an event do.
template <auto setFunction>
int setCallback(CallbackOf<setFunction> callback, void* userData) {
    auto& slot = SlotOf<setFunction>::get();
    const SlowWatch watch(slot.event(), "set call");
    return slot.set(callback, userData);
}

template <auto setFunction>
int unsetCallback() {
    auto& slot = SlotOf<setFunction>::get();
    const SlowWatch watch(slot.event(), "unset call");
    return slot.unset();
}

}  // namespace corvane::host
