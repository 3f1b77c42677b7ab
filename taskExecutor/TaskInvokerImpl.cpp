#include "taskExecutor/TaskInvokerImpl.h"

#include <exception>

#include "daemon/src/common/log.h"
#include "taskExecutor/TaskExecutor.h"

namespace {

constexpr unsigned int QUEUE_TIMEOUT_SEC = 15;
constexpr unsigned int TERMINATION_TIMEOUT_MS = 1000;

}  // namespace

TaskInvokerImpl::TaskInvokerImpl() {
    initiateTaskExecutor();
}

TaskInvokerImpl::~TaskInvokerImpl() {
    terminateTaskExecutor();
}

void TaskInvokerImpl::initiateTaskExecutor() {
    ApiTracker tracker(__PRETTY_FUNCTION__, __LINE__);
    m_taskExecutor = TaskExecutor::Create();
    if (m_taskExecutor) {
        m_taskExecutor->Initiate(QUEUE_TIMEOUT_SEC, QUEUE_CAPACITY);
    }
}

void TaskInvokerImpl::terminateTaskExecutor() {
    ApiTracker tracker(__PRETTY_FUNCTION__, __LINE__);
    if (m_taskExecutor) {
        // Lets the context go also when the termination finds no room in its queue.
        struct Release {
            std::shared_ptr<TaskExecutor>& executor;
            ~Release() { executor.reset(); }
        } release{m_taskExecutor};
        m_taskExecutor->TerminateSync(TERMINATION_TIMEOUT_MS);
    }
}

void TaskInvokerImpl::invokeTask(const ITaskInvoker::Task& task) {
    ApiTracker tracker(__PRETTY_FUNCTION__, __LINE__);
    // Keeps the context alive: its owner may let it go while this thread waits for room in it.
    const std::shared_ptr<TaskExecutor> executor = m_taskExecutor;
    if (!executor || !task) {
        return;
    }
    executor->Schedule(task);
}

void TaskInvokerImpl::runLeftTasks(std::chrono::steady_clock::time_point deadline) {
    const std::shared_ptr<TaskExecutor> executor = m_taskExecutor;
    bool mayBeMore = executor != nullptr;
    while (mayBeMore) {
        try {
            mayBeMore = executor->RunLeftTasks(deadline);
        } catch (const std::exception&) {
            // It took one task out of the queue; others may be behind.
        }
    }
}
