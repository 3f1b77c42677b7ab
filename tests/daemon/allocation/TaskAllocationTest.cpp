// Task contexts and task invokers while allocations fail.
#include <gtest/gtest.h>

#include <array>
#include <functional>
#include <memory>
#include <optional>

#include "daemon/src/broker/RequestBroker.h"
#include "taskExecutor/TaskExecutor.h"
#include "taskExecutor/TaskInvokerImpl.h"
#include "tests/daemon/allocation/Sweep.h"

namespace {

constexpr unsigned int TIME_LIMIT_MS = 20'000;

class TaskScenario : public Scenario {
protected:
    /// Returns a task with captures so large that each copy allocates memory.
    std::function<void()> task() {
        return [this, filler = std::array<void*, 4>{}] { m_ran += filler.size() == 4 ? 1 : 0; };
    }
    int m_ran = 0;
};

class ContextScenario : public TaskScenario {
public:
    void run() override {
        std::shared_ptr<TaskExecutor> executor;
        if (!attempt([&] { executor = TaskExecutor::Create(); })) {
            return;
        }
        const bool runs = attempt([&] { executor->Initiate(0, 0); });
        int accepted = 0;
        accepted += attempt([&] { require(executor->Schedule(m_task), "refused"); });
        accepted +=
            attempt([&] { require(executor->ScheduleSync(m_task, TIME_LIMIT_MS), "not in time"); });
        require(m_ran == (runs ? accepted : 0), "a task that was accepted hasn't run, or another");
        const bool terminated =
            attempt([&] { require(executor->TerminateSync(TIME_LIMIT_MS), "not ended in time"); });
        const int ran = m_ran;
        attempt([&] { require(executor->Schedule(m_task) != terminated, "not refused"); });
        require(!terminated || m_ran == ran, "a task has run after the end");
    }

private:
    std::function<void()> m_task = task();
};

class InvokerScenario : public TaskScenario {
public:
    void run() override {
        std::optional<TaskInvokerImpl> invoker;
        if (!attempt([&] { invoker.emplace(); })) {
            return;
        }
        RequestBroker broker(&*invoker);
        int accepted = 0;
        accepted += attempt([&] { invoker->invokeTask(m_task); });
        accepted += attempt([&] { broker.RequestToInvokeInTaskExecutor(m_request, nullptr); });
        require(m_ran == accepted, "a task that was accepted hasn't run, or another");
    }

private:
    std::function<void()> m_task = task();
    std::function<void(void*)> m_request = [this](void*) { m_task(); };
};

}  // namespace

TEST(TaskAllocationTest, AContextRunsExactlyWhatItAccepted) {
    expectToSurvive(
        "task context", [] { return std::make_unique<ContextScenario>(); }, 10);
}

TEST(TaskAllocationTest, APluginsInvokerRunsExactlyWhatItAccepted) {
    // The destructor terminates the context by a job, and the job needs memory.
    expectToSurvive("task invoker", [] { return std::make_unique<InvokerScenario>(); }, 11,
                    {"~TaskInvokerImpl"});
}
