// A task invoker with a task context of its own; every plugin is one.
#pragma once

#include <chrono>
#include <memory>

#include "taskExecutor/ITaskInvoker.h"

class TaskExecutor;

/// Active from construction until terminateTaskExecutor, which its destructor calls.
///
/// Threads: invokeTask and runLeftTasks from any thread; the others from construction and
/// destruction only, while no call of invokeTask begins. A call that has begun keeps the context
/// alive and may end later.
class TaskInvokerImpl : public ITaskInvoker {
public:
    /// So many tasks may wait behind the one that runs; see invokeTask.
    static constexpr unsigned int QUEUE_CAPACITY = 10;

    TaskInvokerImpl();
    /// Waits up to 1000 ms for the running task. Ends the process if the queue stays
    /// full for 15 s, or without memory.
    ~TaskInvokerImpl() override;
    TaskInvokerImpl(const TaskInvokerImpl&) = delete;
    TaskInvokerImpl& operator=(const TaskInvokerImpl&) = delete;

    /// Runs `task` before returning if the context is idle, else leaves it to the thread
    /// that runs the context. Ignores an empty task, and every task once terminated.
    /// Throws std::domain_error when 10 tasks stayed queued for 15 s, and what a task
    /// that ran on this thread threw.
    void invokeTask(const ITaskInvoker::Task& task) override;

    /// Waits until no other thread runs tasks of the context, at the latest until `deadline`, and
    /// runs those that an exception, or the instant in which a thread left the context, has left
    /// in it. What they throw is only logged, by the context.
    void runLeftTasks(std::chrono::steady_clock::time_point deadline);

    /// Makes a fresh context; one held before is let go as it is.
    void initiateTaskExecutor();
    /// Drops the queued tasks and lets the context go; it is destroyed when the last call into it
    /// has ended. Harmless when done before.
    void terminateTaskExecutor();

private:
    std::shared_ptr<TaskExecutor> m_taskExecutor;
};
