// Threads that deliver injected events.
#include "platform/host/inject/DeliveryThreads.h"

#include <signal.h>

#include <utility>

#include "platform/host/inject/InjectLimits.h"

namespace corvane::host {

DeliveryThreads::DeliveryThreads(std::size_t count) {
    // Signals are handled by the main thread; new threads inherit the mask.
    sigset_t all;
    sigset_t before;
    sigfillset(&all);
    pthread_sigmask(SIG_SETMASK, &all, &before);
    try {
        while (m_workers.size() < count) {
            auto& worker = *m_workers.emplace_back(std::make_unique<Worker>());
            worker.thread = std::thread([&worker] { worker.run(); });
        }
    } catch (...) {
        pthread_sigmask(SIG_SETMASK, &before, nullptr);
        stop();
        throw;
    }
    pthread_sigmask(SIG_SETMASK, &before, nullptr);
}

DeliveryThreads::~DeliveryThreads() {
    stop();
}

void DeliveryThreads::stop() {
    for (const auto& worker : m_workers) {
        const std::lock_guard lock(worker->mutex);
        worker->stops = true;
        worker->changed.notify_one();
    }
    for (const auto& worker : m_workers) {
        if (worker->thread.joinable()) {
            worker->thread.join();
        }
    }
}

bool DeliveryThreads::post(std::function<void()> job) {
    auto& worker = *m_workers[m_next];
    const std::lock_guard lock(worker.mutex);
    if (worker.jobs.size() == limits::MOST_WAITING_EVENTS) {
        return false;
    }
    m_next = (m_next + 1) % m_workers.size();
    worker.jobs.push_back(std::move(job));
    worker.changed.notify_one();
    return true;
}

void DeliveryThreads::Worker::run() {
    std::unique_lock lock(mutex);
    while (true) {
        changed.wait(lock, [this] { return stops || !jobs.empty(); });
        if (stops) {
            return;
        }
        const auto job = std::move(jobs.front());
        jobs.pop_front();
        lock.unlock();
        job();
        lock.lock();
    }
}

}  // namespace corvane::host
