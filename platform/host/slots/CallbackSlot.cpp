// The slots of all events.
#include "platform/host/slots/CallbackSlot.h"

#include <cstddef>

namespace corvane::host {

#define EVENT(library, name, setFunction, unsetFunction, meaning, ...)      \
    template <>                                                             \
    CallbackSlot<CallbackOf<&setFunction>>& SlotOf<&setFunction>::get() {   \
        static constinit CallbackSlot<CallbackOf<&setFunction>> slot(name); \
        return slot;                                                        \
    }
#include "platform/host/events/Events.def"
#undef EVENT

namespace {

using IsSet = bool (*)();

constexpr IsSet IS_SET[] = {
#define EVENT(library, name, setFunction, unsetFunction, meaning, ...) \
    [] { return SlotOf<&setFunction>::get().isSet(); },
#include "platform/host/events/Events.def"
#undef EVENT
};

}  // namespace

bool callbackIsSet(const Event& event) {
    return IS_SET[&event - allEvents().data()]();
}

}  // namespace corvane::host
