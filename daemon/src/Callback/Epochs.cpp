#include "daemon/src/Callback/Epochs.h"

#include <algorithm>

void Epochs::retire(Retired& object) {
    const MutexLock lock(m_mutex);
    object.m_epoch = m_epoch++;
    (m_oldest == nullptr ? m_oldest : m_newest->m_next) = &object;
    m_newest = &object;
    reclaim();
}

bool Epochs::waitForEarlier(std::chrono::steady_clock::time_point deadline) {
    MutexLock lock(m_mutex);
    const Epoch last = m_epoch++;
    ++m_waiting;
    m_isAwaited = true;
    const auto haveAllEnded = [this, last]() REQUIRES(m_mutex) {
        return m_joining == 0 &&
               std::ranges::none_of(m_threads, [last, givenUp = m_givenUp](const Thread& thread) {
                   const Epoch since = thread.since;
                   return givenUp < since && since <= last;
               });
    };
    const bool haveEnded = lock.waitUntil(m_changed, deadline, haveAllEnded);
    --m_waiting;
    if (!haveEnded) {
        m_givenUp = std::max(m_givenUp, last);
    }
    return haveEnded;
}

// Joining needs memory and the mutex. While the counter isn't 0, no object is reclaimed: a thread
// that joins has not published its epoch yet.
Epochs::Thread& Epochs::join() {
    struct Joining {
        explicit Joining(Epochs& all) : epochs(all) { ++epochs.m_joining; }
        ~Joining() {
            --epochs.m_joining;
            if (epochs.m_isAwaited) {
                epochs.proceed();
            }
        }
        Epochs& epochs;
    };
    struct Membership {
        ~Membership() { deliveryEpochs.part(); }
    };
    const Epoch since = m_epoch;
    const Joining joining(*this);
    std::list<Thread> place(1);
    place.front().since = since;
    place.front().depth = 1;
    static thread_local const Membership untilTheThreadEnds;
    const MutexLock lock(m_mutex);
    m_threads.splice(m_threads.begin(), place);
    t_own = &m_threads.front();
    return *t_own;
}

void Epochs::part() {
    const MutexLock lock(m_mutex);
    m_threads.remove_if([](const Thread& thread) { return &thread == t_own; });
    t_own = nullptr;
}

void Epochs::proceed() {
    const MutexLock lock(m_mutex);
    reclaim();
    m_changed.notify_all();
}

// The flag is set before the threads' epochs are read. So a delivery that ends meanwhile is either
// read as ended, or sees the flag and calls proceed.
void Epochs::reclaim() {
    m_isAwaited = true;
    Epoch oldest = m_joining > 0 ? 0 : OUTSIDE;
    for (const Thread& thread : m_threads) {
        oldest = std::min(oldest, thread.since.load());
    }
    while (m_oldest != nullptr && m_oldest->m_epoch < oldest) {
        Retired* const over = m_oldest;
        m_oldest = over->m_next;
        over->reclaim();
    }
    m_isAwaited = m_oldest != nullptr || m_waiting > 0;
}
