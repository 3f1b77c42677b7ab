// The task context that every plugin has: runs tasks one at a time, in order, on the
// threads of the callers.
#pragma once

#include <chrono>
#include <functional>
#include <memory>

#include "taskExecutor/tpl/include_internal/TPLContext.h"

/// Owned through std::shared_ptr only, as made by Create; a thread that runs the
/// executor's tasks shares it until it is done.
///
/// Threads: any. Errors: std::domain_error when the queue stayed full for the time
/// given to Initiate; whatever a task throws reaches the caller whose thread ran it;
/// the exhaustion of memory is thrown.
class TaskExecutor : private TPL::CContext<TaskExecutor> {
public:
    /// Neither initiated nor terminated: tasks are accepted but skipped.
    static std::shared_ptr<TaskExecutor> Create();

    TaskExecutor() = default;

    /// Lets tasks run. A caller that finds `maxJobs` jobs queued (0: any number) waits
    /// up to `timeoutSec` seconds for room.
    bool Initiate(unsigned int timeoutSec, unsigned int maxJobs);

    /// Runs a copy of `task` before returning if no other thread is running this
    /// executor's tasks, else leaves it to that thread. False after termination.
    bool Schedule(const std::function<void()>& task);

    /// The same, and waits up to `timeoutMs` milliseconds until the task has run.
    bool ScheduleSync(const std::function<void()>& task, unsigned int timeoutMs);

    /// Waits until no other thread is running this executor's tasks, and runs those that are
    /// queued then. False if there are none, or if another thread is still running them at the
    /// deadline.
    bool RunLeftTasks(std::chrono::steady_clock::time_point deadline);

    /// Drops the tasks queued behind it and refuses new ones. True once that has
    /// happened, false when it has not within `timeoutMs` milliseconds.
    bool TerminateSync(unsigned int timeoutMs);

private:
    friend class TPL::CContext<TaskExecutor>;

    void _Execute(const std::function<void()>& task);
};
