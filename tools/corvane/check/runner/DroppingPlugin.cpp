// A plugin whose task context ends while a callback runs.
#include "tools/corvane/check/runner/DroppingPlugin.h"

#include <chrono>
#include <string>

#include "taskExecutor/TaskExecutor.h"
#include "tools/corvane/check/runner/Report.h"
#include "tools/corvane/check/runner/RunnerProtocol.h"

namespace corvane::check {

DroppingPlugin::DroppingPlugin() : CheckedPlugin(std::chrono::milliseconds::max()) {
    makeContext();
}

std::shared_ptr<TaskExecutor> DroppingPlugin::makeContext() {
    auto context = TaskExecutor::Create();
    context->Initiate(0, 0);
    const std::lock_guard lock(m_contextMutex);
    m_context = context;
    return context;
}

void DroppingPlugin::invokeTask(const ITaskInvoker::Task& task) {
    const auto event = TaskOrigin::current();
    if (event.empty()) {
        std::unique_lock lock(m_contextMutex);
        const auto context = m_context;
        lock.unlock();
        context->Schedule(task);
        return;
    }
    const auto context = makeContext();
    context->Schedule([&] {
        context->TerminateSync(0);  // queued; no wait, because this task must end first
        task();
        report::step(std::string(DROPPING_STEP) + event);
    });
}

}  // namespace corvane::check
