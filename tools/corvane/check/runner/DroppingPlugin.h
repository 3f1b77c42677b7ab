// A plugin whose task context ends while a callback runs, as at a daemon's end: what the callback
// requests is queued behind the termination, and dropped without being run.
#pragma once

#include <memory>
#include <mutex>

#include "tools/corvane/check/runner/CheckedPlugin.h"

class TaskExecutor;

namespace corvane::check {

/// Owner: main. Threads: as Plugin.
class DroppingPlugin : public CheckedPlugin {
public:
    DroppingPlugin();

    /// Runs an event's task in a context of its own that ends with it. Other tasks go to the
    /// context that was made last.
    void invokeTask(const ITaskInvoker::Task& task) override;

private:
    std::shared_ptr<TaskExecutor> makeContext();

    std::mutex m_contextMutex;
    std::shared_ptr<TaskExecutor> m_context;
};

}  // namespace corvane::check
