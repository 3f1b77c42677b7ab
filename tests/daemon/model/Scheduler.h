// A deterministic scheduler that runs several threads one at a time. At each point where a thread
// may yield, a random generator seeded by the test chooses the next thread. Time is simulated and
// advances only when the scheduler decides so; no thread really waits for a deadline.
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

/// Owner: a run of a program.
/// Threads: run() creates them. All other operations are called by these threads, of which only
/// one runs at a time.
/// Errors: if all threads wait forever (a deadlock), calls `onStuck` and aborts the process.
class Scheduler {
public:
    struct Mutex {
        int owner = -1;
    };
    struct Waiter {
        bool notified = false;
    };
    /// The waiting threads, in the order of arrival.
    using Condition = std::vector<Waiter*>;

    Scheduler(unsigned seed, std::function<void()> onStuck);

    /// Calls each body on its own thread and returns when all have returned.
    void run(const std::vector<std::function<void()>>& bodies);

    /// Return the scheduler and the number of the calling thread, or null and -1 if no scheduler
    /// controls it.
    static Scheduler* current();
    static int actor();

    Time now() const { return m_now; }
    int steps() const { return m_steps; }

    void yield();
    void waitUntil(std::function<bool()> ready, std::optional<Time> deadline = {});

    /// lock may yield before it takes the mutex, unlock after it has released it.
    void lock(Mutex& mutex);
    void unlock(Mutex& mutex);
    /// Returns true if the calling thread holds a mutex.
    bool holdsMutex() const;
    /// Waits for a notification or the deadline. Releases `mutex` meanwhile unless it is null.
    void wait(Condition& condition, Mutex* mutex, Time deadline);
    void notifyOne(Condition& condition);

private:
    struct Actor {
        std::binary_semaphore turn{0};
        std::function<bool()> ready;  // empty if the actor can run at once
        std::optional<Time> deadline;
        int mutexes = 0;
        bool ended = false;
    };

    bool canGoOn(const Actor& actor) const;
    std::optional<Time> nextDeadline() const;
    /// Returns the next actor to run, or null if all have ended.
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
