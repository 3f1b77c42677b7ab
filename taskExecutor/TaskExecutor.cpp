#include "taskExecutor/TaskExecutor.h"

#include "taskExecutor/DirectInvoker.h"

using TPL::CDirectInvoker;

std::shared_ptr<TaskExecutor> TaskExecutor::Create() {
    return TPL::CContext<TaskExecutor>::Create();
}

bool TaskExecutor::Initiate(unsigned int timeoutSec, unsigned int maxJobs) {
    return CContext::Initiate(timeoutSec, maxJobs, CDirectInvoker::GetInstance());
}

bool TaskExecutor::Schedule(const std::function<void()>& task) {
    return InvokeTask(task, CDirectInvoker::GetInstance());
}

bool TaskExecutor::ScheduleSync(const std::function<void()>& task, unsigned int timeoutMs) {
    return InvokeTaskSync(task, timeoutMs, CDirectInvoker::GetInstance());
}

bool TaskExecutor::RunLeftTasks(std::chrono::steady_clock::time_point deadline) {
    return RunLeftJobs(deadline);
}

bool TaskExecutor::TerminateSync(unsigned int timeoutMs) {
    return CContext::TerminateSync(timeoutMs, CDirectInvoker::GetInstance());
}

void TaskExecutor::_Execute(const std::function<void()>& task) {
    task();
}
