// The interface through which event sources and brokers run a plugin's tasks.
#pragma once

#include <functional>

/// Threads: invokeTask may be called from any thread.
class ITaskInvoker {
public:
    using Task = std::function<void()>;

    virtual ~ITaskInvoker() = default;

    /// Queues a copy of `task` in the receiver's task context.
    virtual void invokeTask(const ITaskInvoker::Task& task) = 0;
};
