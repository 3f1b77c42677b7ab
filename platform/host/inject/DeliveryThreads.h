// Threads that deliver injected events in place of the main loop: on a device the
// platform may call from any thread, and from several at once.
#pragma once

#include <condition_variable>
#include <cstddef>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>
#include <thread>
#include <vector>

namespace corvane::host {

/// Owner: InjectServer. Threads: the owner's, except that jobs run on the threads here.
/// Errors: std::system_error if a thread can't be created. An exception from a job ends the
/// process.
class DeliveryThreads {
public:
    explicit DeliveryThreads(std::size_t count);

    /// Waits for the jobs that are running. The others are dropped.
    ~DeliveryThreads();
    DeliveryThreads(const DeliveryThreads&) = delete;
    DeliveryThreads& operator=(const DeliveryThreads&) = delete;

    /// Assigns jobs to the threads in turn; each runs its own in order. Returns false if the
    /// queue of the next thread is full.
    bool post(std::function<void()> job);

private:
    struct Worker {
        std::mutex mutex;
        std::condition_variable changed;
        std::deque<std::function<void()>> jobs;
        bool stops = false;
        std::thread thread;

        void run();
    };

    void stop();

    std::vector<std::unique_ptr<Worker>> m_workers;
    std::size_t m_next = 0;
};

}  // namespace corvane::host
