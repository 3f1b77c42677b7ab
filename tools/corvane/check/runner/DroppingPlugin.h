// A plugin whose task context ends while a callback runs, as when the daemon shuts down. Tasks that
// the callback requests are queued behind the termination and dropped without being run.
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

    /// Runs the task of an event in a new context that ends with the task. Other tasks go to the
    /// newest context.
    void invokeTask(const ITaskInvoker::Task& task) override;

private:
    std::shared_ptr<TaskExecutor> makeContext();

    std::mutex m_contextMutex;
    std::shared_ptr<TaskExecutor> m_context;
};

}  // namespace corvane::check
