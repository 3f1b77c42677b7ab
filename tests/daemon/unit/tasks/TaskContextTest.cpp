// The task context: the thread that runs a job, the order of jobs, and the state after a failure.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <functional>
#include <future>
#include <memory>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include "taskExecutor/ShortLived.h"
#include "taskExecutor/TaskExecutor.h"
#include "taskExecutor/tpl/include_internal/TPLContext.h"
#include "tests/support/FakePlatform.h"
#include "tests/support/Gate.h"
#include "tests/support/IntendedLeak.h"

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

class TaskContextTest : public testing::Test {
protected:
    TaskContextTest() {
        m_executor->Initiate(0, 0);
        fake_platform::reset();
    }
    ~TaskContextTest() override { fake_platform::reset(); }

    std::shared_ptr<TaskExecutor> m_executor = TaskExecutor::Create();
    std::vector<std::string> m_ran;
    std::function<void()> note(const std::string& name) {
        return [this, name] { m_ran.push_back(name); };
    }
};

}  // namespace

TEST_F(TaskContextTest, ATaskOnAnIdleContextRunsBeforeTheCallReturns) {
    std::thread::id ranOn;
    EXPECT_TRUE(m_executor->Schedule([&] { ranOn = std::this_thread::get_id(); }));
    EXPECT_EQ(ranOn, std::this_thread::get_id());
    EXPECT_THAT(fake_platform::transcript(),
                ElementsAre("D QVX_TPL_CONTEXT TPLContext.h : InvokeTask(#) [0x#] > Entered\n",
                            "D QVX_TPL_CONTEXT TPLContext.h : CTaskJob(#)  TaskJob created\n",
                            "D QVX_TPL_CONTEXT TPLContext.h : _InvokeJob(#) [0x#] > Entered\n",
                            "D QVX_TPL_CONTEXT TPLContext.h : _InvokeJob(#)  task is queued\n",
                            "D QVX_TPL_CONTEXT TPLContext.h : _InvokeJob(#)  task is invoked\n",
                            "D QVX_TPL_CONTEXT TPLContext.h : _ProcessJob(#) [0x#] > Entered\n",
                            "D QVX_TPL_CONTEXT TPLContext.h : _ProcessJob(#)  task is poped\n",
                            "D QVX_TPL_CONTEXT TPLContext.h : _ProcessTask(#) [0x#] > Entered\n",
                            "D QVX_TPL_CONTEXT TPLContext.h : _ProcessTask(#)  Processing Task\n",
                            "D QVX_TPL_CONTEXT TPLContext.h : _ProcessTask(#) [0x#]> Left\n",
                            "D QVX_TPL_CONTEXT TPLContext.h : ~CTaskJob(#)  TaskJob destroyed\n",
                            "D QVX_TPL_CONTEXT TPLContext.h : _ProcessJob(#) [0x#]> Left\n",
                            "D QVX_TPL_CONTEXT TPLContext.h : _InvokeJob(#) [0x#]> Left\n",
                            "D QVX_TPL_CONTEXT TPLContext.h : InvokeTask(#) [0x#]> Left\n"));
    EXPECT_EQ(fake_platform::lines().front().logId, fake_platform::NO_LOG_ID);
}

TEST_F(TaskContextTest, AJobQueuedByAJobRunsAfterItInTheSameDrain) {
    std::thread::id innerRanOn;
    EXPECT_TRUE(m_executor->Schedule([&] {
        EXPECT_TRUE(m_executor->Schedule([&] {
            m_ran.push_back("inner");
            innerRanOn = std::this_thread::get_id();
        }));
        m_ran.push_back("outer");
    }));
    EXPECT_THAT(m_ran, ElementsAre("outer", "inner"));
    EXPECT_EQ(innerRanOn, std::this_thread::get_id());
}

TEST_F(TaskContextTest, AJobQueuedWhileAnotherThreadRunsTheContextRunsOnThatThread) {
    Gate inside;
    Gate release;
    std::thread::id laterRanOn;
    std::thread runner([&] {
        m_executor->Schedule([&] {
            inside.open();
            release.wait();
        });
    });
    const std::thread::id runnerId = runner.get_id();
    inside.wait();
    EXPECT_TRUE(m_executor->Schedule([&] { laterRanOn = std::this_thread::get_id(); }));
    EXPECT_EQ(laterRanOn, std::thread::id());
    release.open();
    runner.join();
    EXPECT_EQ(laterRanOn, runnerId);
}

TEST_F(TaskContextTest, TasksAreSkippedUntilTheContextIsInitiated) {
    const auto executor = TaskExecutor::Create();
    EXPECT_TRUE(executor->Schedule(note("skipped")));
    EXPECT_EQ(fake_platform::count("  CAN NOT DO _ProcessTask\n"), 1);
    EXPECT_TRUE(executor->ScheduleSync(note("skipped"), 0));
    EXPECT_EQ(fake_platform::count("  Sync result(1)\n"), 1);
    EXPECT_TRUE(executor->Initiate(0, 0));
    EXPECT_TRUE(executor->Schedule(note("ran")));
    EXPECT_THAT(m_ran, ElementsAre("ran"));
}

TEST_F(TaskContextTest, ASynchronousTaskOnAnIdleContextSucceedsAtOnce) {
    EXPECT_TRUE(m_executor->ScheduleSync(note("ran"), 0));
    EXPECT_THAT(m_ran, ElementsAre("ran"));
    EXPECT_THAT(fake_platform::transcript(),
                testing::IsSupersetOf(
                    {"D QVX_TPL_CONTEXT TPLContext.h : InvokeTaskSync(#) [0x#] > Entered\n",
                     "D QVX_TPL_CONTEXT TPLContext.h : CTaskJobSync(#)  TaskJobSync created\n",
                     "D QVX_TPL_CONTEXT TPLContext.h : ~CTaskJobSync(#)  TaskJobSync destroyed\n",
                     "D QVX_TPL_CONTEXT TPLContext.h : InvokeTaskSync(#)  Sync result(1)\n"}));
}

TEST_F(TaskContextTest, ASynchronousTaskFromInsideAJobTimesOutAndRunsLater) {
    bool result = true;
    m_executor->Schedule([&] {
        result = m_executor->ScheduleSync(note("inner"), 1);
        m_ran.push_back("outer");
    });
    EXPECT_FALSE(result);
    EXPECT_THAT(m_ran, ElementsAre("outer", "inner"));
    EXPECT_EQ(fake_platform::count("  Sync result(0)\n"), 1);
}

TEST_F(TaskContextTest, ASynchronousTaskSucceedsWhenTheRunnerReachesItInTime) {
    Gate inside;
    Gate release;
    std::thread runner([&] {
        m_executor->Schedule([&] {
            inside.open();
            release.wait();
        });
    });
    inside.wait();
    fake_platform::onLog([&release](const fake_platform::Line& line) {
        if (line.text.find("task is queued") != std::string::npos) {
            release.open();
        }
    });
    EXPECT_TRUE(m_executor->ScheduleSync(note("ran"), 20000));
    fake_platform::onLog(nullptr);
    runner.join();
    EXPECT_THAT(m_ran, ElementsAre("ran"));
}

TEST_F(TaskContextTest, ATerminatedContextRefusesJobsAndRunsAgainAfterInitiate) {
    EXPECT_TRUE(m_executor->TerminateSync(0));
    EXPECT_EQ(fake_platform::count("  _Terminate\n"), 1);
    EXPECT_EQ(fake_platform::count("  Sync result(1)\n"), 1);
    fake_platform::reset();

    EXPECT_FALSE(m_executor->Schedule(note("refused")));
    EXPECT_EQ(fake_platform::count("  context is terminated\n"), 1);
    EXPECT_EQ(fake_platform::count("TaskJob destroyed"), 1);
    EXPECT_FALSE(m_executor->TerminateSync(0));
    EXPECT_FALSE(m_executor->ScheduleSync(note("refused"), 0));
    EXPECT_EQ(fake_platform::count("Sync result"), 0);

    EXPECT_TRUE(m_executor->Initiate(0, 0));
    EXPECT_TRUE(m_executor->Schedule(note("ran")));
    EXPECT_THAT(m_ran, ElementsAre("ran"));
}

TEST_F(TaskContextTest, AContextThatWasTerminatedSkipsTasksUntilItIsInitiatedAgain) {
    m_executor->TerminateSync(0);
    // At this line, Initiate has cleared the terminated flag but has not queued its job.
    fake_platform::onLog([this](const fake_platform::Line& line) {
        if (line.text.find("InitiateJob created") != std::string::npos) {
            EXPECT_TRUE(m_executor->Schedule(note("early")));
        }
    });
    EXPECT_TRUE(m_executor->Initiate(0, 0));
    fake_platform::onLog(nullptr);
    EXPECT_EQ(fake_platform::count("CAN NOT DO _ProcessTask"), 1);
    EXPECT_TRUE(m_executor->Schedule(note("late")));
    EXPECT_THAT(m_ran, ElementsAre("late"));
}

TEST_F(TaskContextTest, JobsBehindATerminateJobAreDestroyedUnrun) {
    m_executor->Schedule([&] {
        m_executor->TerminateSync(0);
        m_executor->Schedule(note("behind"));
        m_executor->Schedule(note("behind too"));
    });
    EXPECT_THAT(m_ran, ElementsAre());
    EXPECT_EQ(fake_platform::count("TaskJob created"), 3);
    EXPECT_EQ(fake_platform::count("  TaskJob destroyed"), 3);
    EXPECT_EQ(fake_platform::count("task is poped"), 2);
    EXPECT_FALSE(m_executor->Schedule(note("refused")));
}

TEST_F(TaskContextTest, WhatATaskBehindATerminateJobCapturedIsDestroyedUnderTheMutex) {
    std::future<bool> other;
    const auto schedule = [&](void*) {
        other = std::async(std::launch::async, [this] { return m_executor->Schedule([] {}); });
        EXPECT_EQ(other.wait_for(std::chrono::milliseconds(50)), std::future_status::timeout);
    };
    m_executor->Schedule([&] {
        m_executor->TerminateSync(0);
        m_executor->Schedule([held = std::shared_ptr<void>(this, schedule)] {});
    });
    ASSERT_EQ(other.wait_for(TEST_TIME_LIMIT), std::future_status::ready);
    EXPECT_FALSE(other.get());
}

TEST_F(TaskContextTest, AThrowingTaskReachesTheRunnersCallerAndLeavesTheRestQueued) {
    EXPECT_THROW(m_executor->Schedule([&] {
        m_executor->Schedule(note("left behind"));
        throw std::runtime_error("task");
    }),
                 std::runtime_error);
    EXPECT_EQ(fake_platform::count("  _ProcessJob exception has been occured\n"), 1);
    EXPECT_EQ(fake_platform::count("  _InvokeJob exception has been occured\n"), 1);
    EXPECT_THAT(m_ran, ElementsAre());

    EXPECT_TRUE(m_executor->Schedule(note("next")));
    EXPECT_THAT(m_ran, ElementsAre("left behind", "next"));
}

TEST_F(TaskContextTest, AThrowingTaskLogsTheJobsEndBeforeTheOuterHandler) {
    EXPECT_THROW(m_executor->Schedule([] { throw std::runtime_error("task"); }),
                 std::runtime_error);
    const auto transcript = fake_platform::transcript();
    const std::vector<std::string> tail(transcript.end() - 7, transcript.end());
    EXPECT_THAT(
        tail, ElementsAre(
                  "D QVX_TPL_CONTEXT TPLContext.h : _ProcessTask(#) [0x#]> Left\n",
                  "E QVX_TPL_CONTEXT TPLContext.h : _ProcessJob(#)  _ProcessJob exception has been "
                  "occured\n",
                  "D QVX_TPL_CONTEXT TPLContext.h : ~CTaskJob(#)  TaskJob destroyed\n",
                  "D QVX_TPL_CONTEXT TPLContext.h : _ProcessJob(#) [0x#]> Left\n",
                  "E QVX_TPL_CONTEXT TPLContext.h : _InvokeJob(#)  _InvokeJob exception has been "
                  "occured\n",
                  "D QVX_TPL_CONTEXT TPLContext.h : _InvokeJob(#) [0x#]> Left\n",
                  "D QVX_TPL_CONTEXT TPLContext.h : InvokeTask(#) [0x#]> Left\n"));
}

TEST_F(TaskContextTest, ASynchronousTaskThatThrowsIsNeverSignalled) {
    Gate inside;
    Gate release;
    bool threw = false;
    std::thread runner([&] {
        try {
            m_executor->Schedule([&] {
                inside.open();
                release.wait();
            });
        } catch (const std::runtime_error&) {
            threw = true;
        }
    });
    inside.wait();
    fake_platform::onLog([&release](const fake_platform::Line& line) {
        if (line.text.find("task is queued") != std::string::npos) {
            release.open();
        }
    });
    EXPECT_FALSE(m_executor->ScheduleSync([] { throw std::runtime_error("task"); }, 50));
    runner.join();
    EXPECT_TRUE(threw);
}

TEST_F(TaskContextTest, AnEmptyTaskIsAcceptedAndFailsWhenItRuns) {
    EXPECT_THROW(m_executor->Schedule(nullptr), std::bad_function_call);
    EXPECT_TRUE(m_executor->Schedule(note("next")));
    EXPECT_THAT(m_ran, ElementsAre("next"));
}

namespace {

/// A minimal context with a public constructor, for any invoker.
class OpenContext : public TPL::CContext<OpenContext> {
public:
    void _Execute(const std::function<void()>& task) { task(); }
};

struct CallingInvoker {
    void Invoke(const std::function<void()>& loop) { loop(); }
};

}  // namespace

TEST_F(TaskContextTest, AContextThatNoSharedPointerOwnsThrowsAndKeepsItsJobs) {
    ShortLived::stopKeeping();  // a block kept from before would be reported as a leak
    const IntendedLeak leak;    // a context does not free its queued jobs
    CallingInvoker invoker;
    OpenContext context;
    EXPECT_THROW(context.Initiate(0, 0, invoker), std::bad_weak_ptr);
    EXPECT_EQ(fake_platform::count("  _InvokeJob exception has been occured\n"), 1);
    EXPECT_EQ(fake_platform::count("InitiateJob destroyed"), 0);
}

TEST_F(TaskContextTest, AnInvokerThatFailsLeavesTheContextIdle) {
    struct FailingInvoker {
        void Invoke(const std::function<void()>&) { throw std::runtime_error("invoker"); }
    } failing;
    CallingInvoker calling;
    const auto context = OpenContext::Create();
    context->Initiate(0, 0, calling);
    EXPECT_THROW(context->InvokeTask(note("first"), failing), std::runtime_error);
    EXPECT_TRUE(context->InvokeTask(note("second"), calling));
    EXPECT_THAT(m_ran, ElementsAre("first", "second"));
}

TEST_F(TaskContextTest, ALoopThatIsEnteredAfterTheEndOnlyLogs) {
    struct RepeatingInvoker {
        void Invoke(const std::function<void()>& loop) {
            loop();
            loop();
        }
    } repeating;
    CallingInvoker calling;
    const auto context = OpenContext::Create();
    context->Initiate(0, 0, calling);
    EXPECT_TRUE(context->TerminateSync(1000, repeating));
    EXPECT_EQ(fake_platform::count(")  context is terminated\n"), 1);
    EXPECT_FALSE(context->InvokeTask(note("late"), calling));
    EXPECT_THAT(m_ran, IsEmpty());
}

TEST_F(TaskContextTest, AFailedDrainNeverLetsASecondRunnerIn) {
    // The invoker keeps the failed caller in its exception handler while a second thread becomes
    // the runner. A third caller must still find the context busy.
    struct ThrowingLateInvoker {
        std::function<void()> afterLoop;
        void Invoke(const std::function<void()>& loop) {
            try {
                loop();
            } catch (...) {
                afterLoop();
                throw;
            }
        }
    } late;
    CallingInvoker calling;
    const auto context = OpenContext::Create();
    context->Initiate(0, 0, calling);

    Gate inside;
    Gate release;
    std::thread second;
    late.afterLoop = [&] {
        second = std::thread([&] {
            context->InvokeTask(
                [&] {
                    inside.open();
                    release.wait();
                    m_ran.push_back("second");
                },
                calling);
        });
        inside.wait();
    };
    EXPECT_THROW(context->InvokeTask([] { throw std::runtime_error("task"); }, late),
                 std::runtime_error);
    EXPECT_TRUE(context->InvokeTask(note("third"), calling));
    EXPECT_THAT(m_ran, ElementsAre()) << "the third task ran while the second was running";
    release.open();
    second.join();
    EXPECT_THAT(m_ran, ElementsAre("second", "third"));
}
