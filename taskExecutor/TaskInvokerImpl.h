// A task invoker that owns a task context. Every plugin is a task invoker.
#pragma once

#include <chrono>
#include <memory>

#include "taskExecutor/ITaskInvoker.h"

class TaskExecutor;

/// Active from construction until terminateTaskExecutor, which its destructor calls.
///
/// Threads: invokeTask and runLeftTasks from any thread; the others from construction and
/// destruction only, while no call of invokeTask begins. A running call keeps the context alive and
/// may end later.
class TaskInvokerImpl : public ITaskInvoker {
public:
    /// Maximum queued tasks, not counting the running one; see invokeTask.
    static constexpr unsigned int QUEUE_CAPACITY = 10;

    TaskInvokerImpl();
    /// Waits up to 1000 ms for the running task. Ends the process if the queue stays full for 15 s,
    /// or if memory is exhausted.
    ~TaskInvokerImpl() override;
    TaskInvokerImpl(const TaskInvokerImpl&) = delete;
    TaskInvokerImpl& operator=(const TaskInvokerImpl&) = delete;

    /// Runs `task` before returning if the context is idle; otherwise the thread that runs the
    /// context runs it. Ignores an empty task, and every task after termination. Throws
    /// std::domain_error if 10 tasks stay queued for 15 s, and what a task on this thread throws.
    void invokeTask(const ITaskInvoker::Task& task) override;

    /// Waits, at most until `deadline`, until no other thread runs tasks of the context. Then runs
    /// the tasks left in it: those behind an exception, and one queued while a runner stopped.
    /// Their exceptions are only logged, by the context.
    void runLeftTasks(std::chrono::steady_clock::time_point deadline);

    /// Creates a new context and releases the previous one as it is.
    void initiateTaskExecutor();
    /// Drops the queued tasks and releases the context, which is destroyed at the end of the last
    /// call into it. Does nothing if there is no context.
    void terminateTaskExecutor();

private:
    std::shared_ptr<TaskExecutor> m_taskExecutor;
};
