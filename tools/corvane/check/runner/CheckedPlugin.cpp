// The daemon's plugin, which also measures what runs in its task context.
#include "tools/corvane/check/runner/CheckedPlugin.h"

#include <memory>
#include <utility>

#include "tools/corvane/check/runner/CheckedBroker.h"
#include "tools/corvane/check/runner/Report.h"

namespace corvane::check {

namespace {

thread_local std::string origin;
// Description of the task that this thread runs; empty: none.
thread_local std::string running;
// True while this thread is in invokeTask() and so may run the task context.
thread_local bool isInside = false;

std::string wordsFor(const std::string& taskOrigin) {
    return taskOrigin.empty() ? "a job of the plugin" : "the callback of " + taskOrigin;
}

}  // namespace

TaskOrigin::TaskOrigin(std::string event) : m_before(std::exchange(origin, std::move(event))) {}

TaskOrigin::~TaskOrigin() {
    origin = std::move(m_before);
}

const std::string& TaskOrigin::current() {
    return origin;
}

int CheckedBroker::RequestToInvokeInTaskExecutor(std::function<void(void*)> function,
                                                 void* userData) {
    const TaskOrigin ofPlugin("");
    return RequestBroker::RequestToInvokeInTaskExecutor(std::move(function), userData);
}

void CheckedPlugin::create(const std::string& name, Subscriptions& subscriptions) {
    Plugin::create(name);
    m_broker = std::make_unique<CheckedBroker>(this, subscriptions);
}

bool CheckedPlugin::wasSlow(const std::string& event) {
    const std::lock_guard lock(m_mutex);
    return m_slow.contains(event);
}

void CheckedPlugin::invokeTask(const ITaskInvoker::Task& task) {
    // Also true between two tasks, when objects that the first one captured are destroyed.
    const bool isRunner = isInside;
    if (!isRunner) {
        awaitRoom();
    }
    {
        const std::lock_guard lock(m_mutex);
        if (isRunner && m_waiting >= QUEUE_CAPACITY) {
            report::finding("queue-full",
                            "by " + (running.empty() ? "an object that a task captured" : running));
            return;
        }
        ++m_waiting;
    }
    enqueue([this, task, from = TaskOrigin::current()] { run(task, from); });
}

void CheckedPlugin::enqueue(const ITaskInvoker::Task& task) {
    struct Scope {
        const bool before = std::exchange(isInside, true);
        ~Scope() { isInside = before; }
    } scope;
    Plugin::invokeTask(task);
}

// If several threads meet a full queue, all but one wait for 15 s, even if room is free earlier.
// That isn't the plugin's fault, so delivering threads wait here and only tasks can fill the queue.
void CheckedPlugin::awaitRoom() {
    std::unique_lock lock(m_mutex);
    const auto hasRoom = [this] { return m_waiting < QUEUE_CAPACITY / 2; };
    while (!m_changed.wait_for(lock, std::chrono::milliseconds(100), hasRoom) && m_isRunning) {
    }
}

bool CheckedPlugin::hasWaiting() {
    const std::lock_guard lock(m_mutex);
    return m_waiting > 0;
}

void CheckedPlugin::drain() {
    for (unsigned i = 0; i < QUEUE_CAPACITY && hasWaiting(); ++i) {
        try {
            enqueue([] {});
        } catch (...) {
            report::finding("callback-exception", report::currentException());
        }
    }
}

void CheckedPlugin::run(const ITaskInvoker::Task& task, const std::string& from) {
    using std::chrono::steady_clock;
    struct Scope {
        CheckedPlugin& plugin;
        const std::string& origin;
        const steady_clock::time_point start = steady_clock::now();
        ~Scope() {
            running.clear();
            const std::lock_guard lock(plugin.m_mutex);
            plugin.m_isRunning = false;
            plugin.onEnd(origin, std::chrono::duration_cast<std::chrono::milliseconds>(
                                     steady_clock::now() - start));
        }
    } scope{*this, from};
    {
        const std::lock_guard lock(m_mutex);
        --m_waiting;
        m_isRunning = true;
        m_changed.notify_all();
    }
    if (from.empty()) {
        ++m_jobs;
    }
    running = wordsFor(from);
    task();
}

// Call with m_mutex held.
void CheckedPlugin::onEnd(const std::string& from, std::chrono::milliseconds duration) {
    auto slowest = m_slowestMs.load();
    while (duration.count() > slowest &&
           !m_slowestMs.compare_exchange_weak(slowest, duration.count())) {
    }
    if (duration <= m_slowLimit) {
        return;
    }
    if (m_slow.insert(from).second) {
        report::finding(from.empty() ? "slow-job" : "slow-callback",
                        wordsFor(from) + ": " + std::to_string(duration.count()) +
                            " ms; the limit is " + std::to_string(m_slowLimit.count()) + " ms");
    }
}

}  // namespace corvane::check
