// A std::mutex, its lock, and the annotations by which clang's thread safety analysis
// (-Wthread-safety) checks at compile time that guarded members are used under their mutex.
// Other compilers see no annotations.
#pragma once

#include <chrono>
#include <condition_variable>
#include <mutex>

#ifdef __clang__
#define THREAD_ANNOTATION(attribute) __attribute__((attribute))
#else
#define THREAD_ANNOTATION(attribute)
#endif

#define CAPABILITY(kind) THREAD_ANNOTATION(capability(kind))
#define SCOPED_CAPABILITY THREAD_ANNOTATION(scoped_lockable)
/// A member that is used only with the mutex held.
#define GUARDED_BY(mutex) THREAD_ANNOTATION(guarded_by(mutex))
/// A function that is called only with the mutex held.
#define REQUIRES(mutex) THREAD_ANNOTATION(requires_capability(mutex))
/// A function that is called only without the mutex.
#define EXCLUDES(mutex) THREAD_ANNOTATION(locks_excluded(mutex))
#define ACQUIRE(...) THREAD_ANNOTATION(acquire_capability(__VA_ARGS__))
#define RELEASE(...) THREAD_ANNOTATION(release_capability(__VA_ARGS__))
/// A function that returns the mutex of that name.
#define RETURN_CAPABILITY(mutex) THREAD_ANNOTATION(lock_returned(mutex))

/// Locked by MutexLock only.
class CAPABILITY("mutex") Mutex : public std::mutex {};

/// Holds a mutex from its construction on, except between unlock and lock. Throws
/// std::system_error for a mutex that can't be locked.
class SCOPED_CAPABILITY MutexLock {
public:
    explicit MutexLock(Mutex& mutex) ACQUIRE(mutex) : m_lock(mutex) {}
    ~MutexLock() RELEASE() {}
    MutexLock(const MutexLock&) = delete;
    MutexLock& operator=(const MutexLock&) = delete;

    void lock() ACQUIRE() { m_lock.lock(); }
    void unlock() RELEASE() { m_lock.unlock(); }

    /// Releases the mutex while it waits. Returns what `predicate`, which is called with the mutex
    /// held, says at the end.
    template <typename Predicate>
    bool waitUntil(std::condition_variable& condition,
                   std::chrono::steady_clock::time_point deadline, Predicate predicate) {
        return condition.wait_until(m_lock, deadline, predicate);
    }

private:
    std::unique_lock<std::mutex> m_lock;
};
