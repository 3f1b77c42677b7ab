// The callback of one kind of event, and the observer of all slots.
#include "platform/host/slots/Slot.h"

#include <time.h>

#include <cerrno>
#include <shared_mutex>
#include <utility>

namespace corvane::host {

namespace {

// Held shared while the observer is called, so that it can be replaced safely.
std::shared_mutex observerMutex;
SlotObserver currentObserver = nullptr;
void* observerData = nullptr;

void tellObserver(SlotChange change, const char* event, unsigned called = 0) {
    const std::shared_lock lock(observerMutex);
    if (currentObserver != nullptr) {
        currentObserver(observerData, change, event, called);
    }
}

}  // namespace

void setSlotObserver(SlotObserver observer, void* data) {
    const std::unique_lock lock(observerMutex);
    currentObserver = observer;
    observerData = data;
}

constinit thread_local Slot::Call* Slot::Call::innermost = nullptr;

Slot::Call::Call(Slot& slot) : m_slot(slot) {
    const std::lock_guard lock(slot.m_mutex);
    m_callback = slot.m_callback;
    m_userData = slot.m_userData;
    if (m_callback != nullptr) {
        ++slot.m_running;
        m_outer = std::exchange(innermost, this);
    }
}

Slot::Call::~Call() {
    if (m_callback == nullptr) {
        return;
    }
    innermost = m_outer;
    const std::lock_guard lock(m_slot.m_mutex);
    --m_slot.m_running;
    pthread_cond_broadcast(&m_slot.m_callEnded);
}

unsigned Slot::Call::countOnThisThread(const Slot& slot) {
    unsigned count = 0;
    for (const Call* call = innermost; call != nullptr; call = call->m_outer) {
        count += &call->m_slot == &slot ? 1 : 0;
    }
    return count;
}

int Slot::set(AnyFunction callback, void* userData) {
    if (callback == nullptr) {
        return -EINVAL;
    }
    const std::lock_guard lock(m_mutex);
    m_callback = callback;
    m_userData = userData;
    tellObserver(SlotChange::Set, m_event);
    return 0;
}

int Slot::unset() {
    const std::lock_guard lock(m_mutex);
    m_callback = nullptr;
    m_userData = nullptr;
    tellObserver(SlotChange::Unset, m_event);
    waitForOtherThreads();
    return 0;
}

bool Slot::isSet() {
    const std::lock_guard lock(m_mutex);
    return m_callback != nullptr;
}

void Slot::tellDelivered(unsigned called) {
    tellObserver(SlotChange::Delivered, m_event, called);
}

void Slot::waitForOtherThreads() {
    constexpr long limitNs = 100'000'000;
    constexpr long secondNs = 1'000'000'000;
    timespec end{};
    clock_gettime(CLOCK_MONOTONIC, &end);
    end.tv_sec += (end.tv_nsec + limitNs) / secondNs;
    end.tv_nsec = (end.tv_nsec + limitNs) % secondNs;
    const unsigned own = Call::countOnThisThread(*this);
    while (m_running > own && pthread_cond_clockwait(&m_callEnded, m_mutex.native_handle(),
                                                     CLOCK_MONOTONIC, &end) == 0) {
    }
}

}  // namespace corvane::host
