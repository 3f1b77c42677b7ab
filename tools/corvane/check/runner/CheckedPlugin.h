// The daemon's plugin, which also measures what runs in its task context.
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

/// RAII: names the origin of the tasks that this thread enqueues: an event or, if empty, the
/// plugin. Threads: each has its own origin.
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

/// Owner: PluginRun or main. Threads: as Plugin.
class CheckedPlugin : public Plugin {
public:
    explicit CheckedPlugin(std::chrono::milliseconds slowLimit) : m_slowLimit(slowLimit) {}

    /// As Plugin::create, with a broker that records to `subscriptions`.
    void create(const std::string& name, Subscriptions& subscriptions);

    bool isOpen() const { return m_handle != nullptr; }
    /// Returns true if a callback of that event was slow.
    bool wasSlow(const std::string& event);
    long long slowestMs() const { return m_slowestMs; }
    unsigned jobs() const { return m_jobs; }

    /// As Plugin::invokeTask, but reports slow tasks. If the queue is full and the daemon would
    /// time out, it reports that and drops the task.
    void invokeTask(const ITaskInvoker::Task& task) override;

    /// Runs the tasks that are still queued because a task threw, or because a task was enqueued
    /// just when another ended. In the daemon, the next event would run them.
    void drain();

private:
    bool hasWaiting();
    void awaitRoom();
    void enqueue(const ITaskInvoker::Task& task);
    void run(const ITaskInvoker::Task& task, const std::string& origin);
    void onEnd(const std::string& origin, std::chrono::milliseconds duration);

    const std::chrono::milliseconds m_slowLimit;
    std::atomic<unsigned> m_jobs = 0;
    std::atomic<long long> m_slowestMs = 0;
    std::mutex m_mutex;
    std::condition_variable m_changed;
    unsigned m_waiting = 0;  // tasks that are queued and not started
    bool m_isRunning = false;
    std::set<std::string> m_slow;
};

}  // namespace corvane::check
