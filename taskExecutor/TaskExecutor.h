// The task context of a plugin: runs tasks one at a time, in order, on the callers' threads.
#pragma once

#include <chrono>
#include <functional>
#include <memory>

#include "taskExecutor/tpl/include_internal/TPLContext.h"

/// Created by Create and owned through std::shared_ptr only. A thread that runs the executor's
/// tasks shares the ownership meanwhile.
///
/// Threads: any. Errors: std::domain_error if the queue stays full for the time given to Initiate;
/// an exception thrown by a task reaches the caller whose thread runs it; the exhaustion of memory.
class TaskExecutor : private TPL::CContext<TaskExecutor> {
public:
    /// Returns an executor that is neither initiated nor terminated: it accepts tasks, but skips
    /// them.
    static std::shared_ptr<TaskExecutor> Create();

    TaskExecutor() = default;

    /// Lets tasks run. When `maxJobs` jobs are queued (0: no limit), a caller waits up to
    /// `timeoutSec` seconds for room.
    bool Initiate(unsigned int timeoutSec, unsigned int maxJobs);

    /// Runs a copy of `task` before returning if no thread is running this executor's tasks;
    /// otherwise the running thread runs it. Returns false after termination.
    bool Schedule(const std::function<void()>& task);

    /// Like Schedule, and waits up to `timeoutMs` milliseconds until the task has run.
    bool ScheduleSync(const std::function<void()>& task, unsigned int timeoutMs);

    /// Waits until no other thread is running this executor's tasks, then runs those still queued.
    /// Returns false if none are queued, or if another thread is still running at the deadline.
    bool RunLeftTasks(std::chrono::steady_clock::time_point deadline);

    /// Drops the tasks queued after this call and refuses new ones. Returns false if that has not
    /// happened within `timeoutMs` milliseconds.
    bool TerminateSync(unsigned int timeoutMs);

private:
    friend class TPL::CContext<TaskExecutor>;

    void _Execute(const std::function<void()>& task);
};
