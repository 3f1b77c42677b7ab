// A plugin's task invoker but for the queue's limit. A job that comes in while the
// runner leaves waits for the next one; behind a full queue that could hold producers
// up for seconds.
#pragma once

#include <memory>

#include "ITaskInvoker.h"
#include "TaskExecutor.h"

/// Threads: any.
class UnlimitedTaskInvoker : public ITaskInvoker {
public:
    UnlimitedTaskInvoker() { m_executor->Initiate(0, 0); }
    ~UnlimitedTaskInvoker() override { m_executor->TerminateSync(1000); }
    void invokeTask(const ITaskInvoker::Task& task) override { m_executor->Schedule(task); }
    /// Runs what waits for the next job; for when nobody else queues any.
    void runTheRest() {
        m_executor->Schedule([] {});
    }

private:
    std::shared_ptr<TaskExecutor> m_executor = TaskExecutor::Create();
};
