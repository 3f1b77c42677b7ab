// What event sources and brokers know of a plugin: something that runs tasks.
#pragma once

#include <functional>

/// Threads: invokeTask may be called from any thread.
class ITaskInvoker {
public:
    using Task = std::function<void()>;

    virtual ~ITaskInvoker() = default;

    /// Hands `task`, by copy, to the receiver's task context.
    virtual void invokeTask(const ITaskInvoker::Task& task) = 0;
};
