// The slots of all the platform libraries, and who is told what happens to them.
#include "platform/host/slots/Slots.h"

#include <shared_mutex>

#include "platform/host/slots/CallbackSlot.h"

namespace corvane::host {

#define SLOT(setFunction, event) \
    constinit CallbackSlot<CallbackOf<&setFunction>> SlotHolder<&setFunction>::slot{event};
#include "platform/host/slots/Slots.def"
#undef SLOT

constinit std::atomic<bool> slotsAreObserved{false};

namespace {

// Held shared while the observer is told, so that it can be taken away in safety.
std::shared_mutex observerMutex;
SlotObserver currentObserver = nullptr;
void* observerData = nullptr;

constexpr SlotState states[] = {
#define SLOT(setFunction, event) {event, [] { return slotOf<&setFunction>.isSet(); }},
#include "platform/host/slots/Slots.def"
#undef SLOT
};

}  // namespace

void setSlotObserver(SlotObserver observer, void* data) {
    const std::unique_lock lock(observerMutex);
    currentObserver = observer;
    observerData = data;
    slotsAreObserved.store(observer != nullptr, std::memory_order_release);
}

void tellSlotObserver(SlotChange change, const char* event, unsigned called) {
    const std::shared_lock lock(observerMutex);
    if (currentObserver != nullptr) {
        currentObserver(observerData, change, event, called);
    }
}

std::span<const SlotState> slotStates() {
    return states;
}

}  // namespace corvane::host
