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
/// A member that may be used only with the mutex held.
#define GUARDED_BY(mutex) THREAD_ANNOTATION(guarded_by(mutex))
/// A function that may be called only with the mutex held.
#define REQUIRES(mutex) THREAD_ANNOTATION(requires_capability(mutex))
/// A function that may be called only without the mutex held.
#define EXCLUDES(mutex) THREAD_ANNOTATION(locks_excluded(mutex))
#define ACQUIRE(...) THREAD_ANNOTATION(acquire_capability(__VA_ARGS__))
#define RELEASE(...) THREAD_ANNOTATION(release_capability(__VA_ARGS__))
/// A function that returns this mutex.
#define RETURN_CAPABILITY(mutex) THREAD_ANNOTATION(lock_returned(mutex))

/// Locked by MutexLock only.
class CAPABILITY("mutex") Mutex : public std::mutex {};

/// RAII lock. Holds a mutex from its construction, except between unlock and lock. Throws
/// std::system_error if the mutex can't be locked.
class SCOPED_CAPABILITY MutexLock {
public:
    explicit MutexLock(Mutex& mutex) ACQUIRE(mutex) : m_lock(mutex) {}
    ~MutexLock() RELEASE() {}
    MutexLock(const MutexLock&) = delete;
    MutexLock& operator=(const MutexLock&) = delete;

    void lock() ACQUIRE() { m_lock.lock(); }
    void unlock() RELEASE() { m_lock.unlock(); }

    /// Waits until `predicate` is true or the deadline is reached; returns the predicate's last
    /// result. Releases the mutex while it waits; `predicate` is called with the mutex held.
    template <typename Predicate>
    bool waitUntil(std::condition_variable& condition,
                   std::chrono::steady_clock::time_point deadline, Predicate predicate) {
        return condition.wait_until(m_lock, deadline, predicate);
    }

private:
    std::unique_lock<std::mutex> m_lock;
};
