// Runs several threads one at a time: a seed chooses who goes on at each point where
// one may give way to another. Time is the scheduler's own and passes only when it
// chooses to, so nothing here ever really waits for a deadline.
#pragma once

#include <chrono>
#include <functional>
#include <memory>
#include <optional>
#include <random>
#include <semaphore>
#include <vector>

namespace model {

using Time = std::chrono::nanoseconds;  // since the start of the run

/// Owner: a run of a program. Threads: made by run(); every other operation is for
/// those threads, of which one at a time is going on. A run in which everybody waits
/// for ever ends the process, after `onStuck`.
class Scheduler {
public:
    struct Mutex {
        int owner = -1;
    };
    struct Waiter {
        bool notified = false;
    };
    /// Who waits, in the order of coming.
    using Condition = std::vector<Waiter*>;

    Scheduler(unsigned seed, std::function<void()> onStuck);

    /// Calls each of the bodies on a thread of its own until all have returned.
    void run(const std::vector<std::function<void()>>& bodies);

    /// The scheduler and number of the calling thread; null and -1 on any other thread.
    static Scheduler* current();
    static int actor();

    Time now() const { return m_now; }
    int steps() const { return m_steps; }

    void yield();
    void waitUntil(std::function<bool()> ready, std::optional<Time> deadline = {});

    /// May give way before the mutex is taken, and after it has been let go.
    void lock(Mutex& mutex);
    void unlock(Mutex& mutex);
    /// Whether the calling thread holds a mutex.
    bool holdsMutex() const;
    /// Waits for a notification or the deadline, without `mutex` if there is one.
    void wait(Condition& condition, Mutex* mutex, Time deadline);
    void notifyOne(Condition& condition);

private:
    struct Actor {
        std::binary_semaphore turn{0};
        std::function<bool()> ready;  // empty: at once
        std::optional<Time> deadline;
        int mutexes = 0;
        bool ended = false;
    };

    bool canGoOn(const Actor& actor) const;
    std::optional<Time> nextDeadline() const;
    /// Null when all have ended.
    Actor* choose(const Actor* last);
    unsigned random(std::size_t end);

    std::mt19937 m_random;
    unsigned m_changesOneIn;
    std::function<void()> m_onStuck;
    std::vector<std::unique_ptr<Actor>> m_actors;
    Time m_now{0};
    int m_steps = 0;
    std::binary_semaphore m_allEnded{0};
};

}  // namespace model
