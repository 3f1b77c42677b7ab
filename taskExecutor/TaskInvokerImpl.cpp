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
        // Releases the context also if the queue has no room for the termination.
        struct Release {
            std::shared_ptr<TaskExecutor>& executor;
            ~Release() { executor.reset(); }
        } release{m_taskExecutor};
        m_taskExecutor->TerminateSync(TERMINATION_TIMEOUT_MS);
    }
}

void TaskInvokerImpl::invokeTask(const ITaskInvoker::Task& task) {
    ApiTracker tracker(__PRETTY_FUNCTION__, __LINE__);
    // Keeps the context alive: its owner may release it while this thread waits for room.
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
            // The task that threw has left the queue; others may remain.
        }
    }
}
