// Jobs for the main loop, from any thread, in first-in, first-out order. Ecore's own
// function for this runs a job of the main thread before older ones of other threads.
#pragma once

#include <Ecore.h>

#include <functional>
#include <mutex>
#include <vector>

namespace corvane::host {

/// Owner: InjectServer, on the main thread. Threads: push() on any, the rest on the main
/// thread. Jobs that haven't run when the queue is destroyed are dropped.
/// Errors: std::bad_alloc; the constructor throws std::system_error too.
class MainLoopQueue {
public:
    MainLoopQueue();
    ~MainLoopQueue();
    MainLoopQueue(const MainLoopQueue&) = delete;
    MainLoopQueue& operator=(const MainLoopQueue&) = delete;

    void push(std::function<void()> job);

    /// Runs the queued jobs at once, without waiting for the main loop.
    void run();

private:
    const int m_fd;
    Ecore_Fd_Handler* m_handler;
    std::mutex m_mutex;
    std::vector<std::function<void()>> m_jobs;
};

}  // namespace corvane::host
