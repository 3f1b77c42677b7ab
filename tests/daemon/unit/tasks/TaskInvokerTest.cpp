// The task invokers: the one of a plugin, with its limits, the direct one and the main thread's.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <memory>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include "taskExecutor/DirectInvoker.h"
#include "taskExecutor/MainThreadInvoker.h"
#include "taskExecutor/TaskInvokerImpl.h"
#include "tests/support/FakePlatform.h"
#include "tests/support/Gate.h"

using testing::ElementsAre;

namespace {

class TaskInvokerTest : public testing::Test {
protected:
    ~TaskInvokerTest() override {
        m_invoker.reset();
        fake_platform::reset();
    }
    std::unique_ptr<TaskInvokerImpl> m_invoker = std::make_unique<TaskInvokerImpl>();
};

std::vector<std::string> tplMessages() {
    std::vector<std::string> messages;
    for (const std::string& line : fake_platform::transcript()) {
        const std::size_t at = line.find(")  ");
        if (at != std::string::npos) {
            messages.push_back(line.substr(at + 3, line.size() - at - 4));
        }
    }
    return messages;
}

}  // namespace

TEST_F(TaskInvokerTest, IsInitiatedWhenTheConstructorReturns) {
    EXPECT_THAT(fake_platform::transcript().front(),
                "D QVX log.h: ApiTracker(#) > IN >> [void "
                "TaskInvokerImpl::initiateTaskExecutor()(#)]");
    EXPECT_THAT(tplMessages(),
                ElementsAre("InitiateJob created", "task is queued", "task is invoked",
                            "task is poped", "Initiating", "InitiateJob destroyed"));
}

TEST_F(TaskInvokerTest, ATaskOnAnIdleInvokerRunsBeforeTheCallReturns) {
    std::thread::id ranOn;
    fake_platform::reset();
    m_invoker->invokeTask([&] { ranOn = std::this_thread::get_id(); });
    EXPECT_EQ(ranOn, std::this_thread::get_id());
    const std::string signature =
        "[virtual void TaskInvokerImpl::invokeTask(const ITaskInvoker::Task&)(#)]";
    EXPECT_EQ(fake_platform::transcript().front(),
              "D QVX log.h: ApiTracker(#) > IN >> " + signature);
    EXPECT_EQ(fake_platform::transcript().back(),
              "D QVX log.h: ~ApiTracker(#) > OUT << " + signature);
}

TEST_F(TaskInvokerTest, AnEmptyTaskIsIgnored) {
    fake_platform::reset();
    m_invoker->invokeTask(nullptr);
    EXPECT_EQ(fake_platform::lines().size(), 2U);
}

TEST_F(TaskInvokerTest, IgnoresTasksOnceTerminatedAndTerminatesOnce) {
    m_invoker->terminateTaskExecutor();
    fake_platform::reset();
    m_invoker->terminateTaskExecutor();
    m_invoker->invokeTask([] { FAIL() << "ran"; });
    EXPECT_EQ(fake_platform::lines().size(), 4U);
}

TEST_F(TaskInvokerTest, RunsTasksAgainWithAFreshExecutor) {
    m_invoker->terminateTaskExecutor();
    m_invoker->initiateTaskExecutor();
    bool ran = false;
    m_invoker->invokeTask([&] { ran = true; });
    EXPECT_TRUE(ran);
}

TEST_F(TaskInvokerTest, DestructionOfAnIdleInvokerTerminatesItsContext) {
    fake_platform::reset();
    m_invoker.reset();
    EXPECT_EQ(fake_platform::transcript().front(),
              "D QVX log.h: ApiTracker(#) > IN >> [void "
              "TaskInvokerImpl::terminateTaskExecutor()(#)]");
    EXPECT_THAT(tplMessages(), ElementsAre("TerminateJob created", "CTerminateJobSync created",
                                           "task is queued", "task is invoked", "task is poped",
                                           "_Terminate", "CTerminateJobSync destroyed",
                                           "TerminateJob destroyed", "Sync result(1)"));
}

TEST_F(TaskInvokerTest, DestructionWhileATaskRunsGivesUpAfterASecondAndTheTaskStillEnds) {
    Gate inside;
    Gate release;
    std::thread runner([&] {
        m_invoker->invokeTask([&] {
            inside.open();
            release.wait();
        });
    });
    inside.wait();
    fake_platform::reset();
    const auto start = std::chrono::steady_clock::now();
    m_invoker->terminateTaskExecutor();
    EXPECT_GE(std::chrono::steady_clock::now() - start, std::chrono::milliseconds(1000));
    EXPECT_EQ(fake_platform::count("Sync result(0)"), 1);
    EXPECT_EQ(fake_platform::count("  _Terminate"), 0);
    release.open();
    runner.join();
    EXPECT_EQ(fake_platform::count("  _Terminate"), 1);
}

TEST_F(TaskInvokerTest, TenTasksWaitBehindARunningOne) {
    std::vector<int> ran;
    m_invoker->invokeTask([&] {
        for (int i = 0; i < 10; ++i) {
            m_invoker->invokeTask([&ran, i] { ran.push_back(i); });
        }
    });
    EXPECT_THAT(ran, ElementsAre(0, 1, 2, 3, 4, 5, 6, 7, 8, 9));
}

TEST_F(TaskInvokerTest, ATasksExceptionReachesTheCallerWhoseThreadRanIt) {
    EXPECT_THROW(m_invoker->invokeTask([] { throw std::runtime_error("task"); }),
                 std::runtime_error);
}

TEST_F(TaskInvokerTest, TasksLeftByAnExceptionCanBeRunWithoutAnotherOne) {
    std::vector<int> ran;
    EXPECT_THROW(m_invoker->invokeTask([&] {
        m_invoker->invokeTask([&ran] { ran.push_back(1); });
        m_invoker->invokeTask([] { throw std::runtime_error("left behind"); });
        m_invoker->invokeTask([&ran] { ran.push_back(2); });
        throw std::runtime_error("task");
    }),
                 std::runtime_error);
    EXPECT_THAT(ran, ElementsAre());
    m_invoker->runLeftTasks(std::chrono::steady_clock::now());
    EXPECT_THAT(ran, ElementsAre(1, 2));
}

TEST_F(TaskInvokerTest, WithoutTasksThereIsNothingToRunAndNothingToLog) {
    fake_platform::reset();
    m_invoker->runLeftTasks(std::chrono::steady_clock::now());
    EXPECT_TRUE(fake_platform::lines().empty());
}

TEST_F(TaskInvokerTest, TasksThatAnotherThreadRunsAreWaitedFor) {
    Gate isInside;
    Gate mayGoOn;
    int ran = 0;
    std::thread runner([&] {
        m_invoker->invokeTask([&] {
            isInside.open();
            mayGoOn.wait();
            ++ran;
        });
    });
    isInside.wait();
    for (int i = 0; i < 3; ++i) {
        m_invoker->invokeTask([&ran] { ++ran; });
    }
    const auto now = std::chrono::steady_clock::now();
    m_invoker->runLeftTasks(now);
    EXPECT_EQ(ran, 0);
    mayGoOn.open();
    m_invoker->runLeftTasks(now + TEST_TIME_LIMIT);
    EXPECT_EQ(ran, 4);
    runner.join();
}

TEST(DirectInvokerTest, IsOneForTheProcessAndCallsAtOnce) {
    TPL::CDirectInvoker& invoker = TPL::CDirectInvoker::GetInstance();
    EXPECT_EQ(&invoker, &TPL::CDirectInvoker::GetInstance());
    bool called = false;
    invoker.Invoke([&] { called = true; });
    EXPECT_TRUE(called);
}

TEST(MainThreadInvokerTest, NamesNoThreadUntilItIsSet) {
    EXPECT_EQ(MainThreadInvoker::getMainThreadId(), std::thread::id());
    MainThreadInvoker::setMainThreadId(std::this_thread::get_id());
    EXPECT_EQ(MainThreadInvoker::getMainThreadId(), std::this_thread::get_id());
    MainThreadInvoker::setMainThreadId({});
}
