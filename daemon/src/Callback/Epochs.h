// Epoch-based reclamation for event deliveries. A delivery publishes the epoch in which it began
// and takes no lock. Retiring an object stamps it with the current epoch and begins the next one;
// the object is freed when every delivery that began in its epoch or earlier has ended.
// What is protected: replaced subscriber lists, deleted event sources, and, by waitForEarlier, the
// libraries of plugins that have unsubscribed. docs/threading.md has a diagram and the argument.
#pragma once

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <limits>
#include <list>

#include "taskExecutor/Mutex.h"

/// An object that deliveries may still use when no new delivery can find it.
class Retired {
public:
    /// Destroys the object. Called on any thread, with the epochs' mutex held.
    virtual void reclaim() noexcept = 0;

protected:
    virtual ~Retired() = default;

private:
    friend class Epochs;
    Retired* m_next = nullptr;
    std::uint64_t m_epoch = 0;
};

/// The one instance is `deliveryEpochs`. Threads: any. Errors: a mutex that can't be locked; enter
/// also the exhaustion of memory, on a thread's first delivery.
class Epochs {
public:
    /// What a thread publishes.
    struct Thread;

    Epochs() = default;
    // A thread may deliver while the process exits.
    ~Epochs() = delete;

    /// Begins a delivery; they may nest. Returns what to pass to leave, on the same thread.
    Thread& enter();
    void leave(Thread& thread);

    /// Reclaims `object` when every delivery that began before has ended: now, or at the end of
    /// the last of them. No new delivery may find it.
    void retire(Retired& object) EXCLUDES(m_mutex);

    /// Waits until every delivery that began before the call has ended. False if that takes until
    /// `deadline`; the deliveries still under way then are not waited for again, because a
    /// callback may never return. Not to be called in a delivery.
    bool waitForEarlier(std::chrono::steady_clock::time_point deadline) EXCLUDES(m_mutex);

private:
    using Epoch = std::uint64_t;

    static constexpr Epoch OUTSIDE = std::numeric_limits<Epoch>::max();

    /// A thread's first delivery, and its end.
    Thread& join();
    void part();
    void proceed() EXCLUDES(m_mutex);
    void reclaim() REQUIRES(m_mutex);

    static inline constinit thread_local Thread* t_own = nullptr;

    std::atomic<Epoch> m_epoch = 1;
    std::atomic<int> m_joining = 0;
    // Set while an object or a thread waits for deliveries to end.
    std::atomic<bool> m_isAwaited = false;

    Mutex m_mutex;
    std::condition_variable m_changed;
    std::list<Thread> m_threads GUARDED_BY(m_mutex);  // those that have delivered
    Retired* m_oldest GUARDED_BY(m_mutex) = nullptr;
    Retired* m_newest GUARDED_BY(m_mutex) = nullptr;
    int m_waiting GUARDED_BY(m_mutex) = 0;
    // Deliveries of this epoch and earlier are not waited for.
    Epoch m_givenUp GUARDED_BY(m_mutex) = 0;
};

/// On a cache line of its own, for its thread writes it twice in each delivery.
struct alignas(64) Epochs::Thread {
    std::atomic<Epoch> since = OUTSIDE;
    unsigned depth = 0;  // of nested deliveries
};

inline Epochs::Thread& Epochs::enter() {
    if (t_own == nullptr) {
        return join();
    }
    if (t_own->depth++ == 0) {
        t_own->since = m_epoch.load();
    }
    return *t_own;
}

inline void Epochs::leave(Thread& thread) {
    if (--thread.depth == 0) {
        thread.since = OUTSIDE;
        if (m_isAwaited) {
            proceed();
        }
    }
}

inline Epochs& deliveryEpochs = *new Epochs;

/// Guards one delivery. Created and destroyed on the same thread.
class EpochGuard {
public:
    EpochGuard() : m_thread(deliveryEpochs.enter()) {}
    ~EpochGuard() { deliveryEpochs.leave(m_thread); }
    EpochGuard(const EpochGuard&) = delete;
    EpochGuard& operator=(const EpochGuard&) = delete;

private:
    Epochs::Thread& m_thread;
};
