// Task invokers for tests: one runs a task at once, the other queues it.
#pragma once

#include <deque>
#include <utility>

#include "taskExecutor/ITaskInvoker.h"

class DirectTaskInvoker : public ITaskInvoker {
public:
    void invokeTask(const ITaskInvoker::Task& task) override { task(); }
};

/// Threads: only one.
class QueueTaskInvoker : public ITaskInvoker {
public:
    void invokeTask(const ITaskInvoker::Task& task) override { tasks.push_back(task); }
    void runAll() {
        while (!tasks.empty()) {
            const ITaskInvoker::Task task = std::move(tasks.front());
            tasks.pop_front();
            task();
        }
    }

    std::deque<ITaskInvoker::Task> tasks;
};
