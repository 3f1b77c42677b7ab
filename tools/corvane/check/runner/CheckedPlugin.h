// The daemon's plugin, with an eye on what runs in its task context.
#pragma once

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <mutex>
#include <set>
#include <string>

#include "daemon/src/Plugin.h"
#include "tools/corvane/check/runner/Subscriptions.h"

namespace corvane::check {

/// Where a task comes from, on the thread that hands it in: an event or, if empty, the
/// plugin. Threads: each has its own.
class TaskOrigin {
public:
    explicit TaskOrigin(std::string event);
    ~TaskOrigin();
    TaskOrigin(const TaskOrigin&) = delete;
    TaskOrigin& operator=(const TaskOrigin&) = delete;

    static const std::string& current();

private:
    std::string m_before;
};

/// Owner: the rehearsal. Threads: as Plugin.
class CheckedPlugin : public Plugin {
public:
    explicit CheckedPlugin(std::chrono::milliseconds slowLimit) : m_slowLimit(slowLimit) {}

    /// As Plugin::create, with a broker that keeps `subscriptions`.
    void create(const std::string& name, Subscriptions& subscriptions);

    bool isOpen() const { return m_handle != nullptr; }
    /// Whether a callback of that event was slow.
    bool wasSlow(const std::string& event);
    long long slowestMs() const { return m_slowestMs; }
    unsigned jobs() const { return m_jobs; }

    /// As Plugin's, but reports what takes too long. A task for which the daemon would wait
    /// in vain is reported and dropped.
    void invokeTask(const ITaskInvoker::Task& task) override;

    /// Runs what still waits in the task context: a task that threw left it, or a task handed
    /// in just when another ended. The next event would have brought it along.
    void drain();

private:
    bool hasWaiting();
    void awaitRoom();
    void handIn(const ITaskInvoker::Task& task);
    void run(const ITaskInvoker::Task& task, const std::string& origin);
    void onEnd(const std::string& origin, std::chrono::milliseconds duration);

    const std::chrono::milliseconds m_slowLimit;
    std::atomic<unsigned> m_jobs = 0;
    std::atomic<long long> m_slowestMs = 0;
    std::mutex m_mutex;
    std::condition_variable m_changed;
    unsigned m_waiting = 0;  // tasks handed in and not begun
    bool m_isRunning = false;
    std::set<std::string> m_slow;
};

}  // namespace corvane::check
