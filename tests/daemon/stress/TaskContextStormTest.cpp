// Many threads queue tasks, some of which throw. The task context must never run two at once.
#include <gtest/gtest.h>

#include <atomic>
#include <memory>
#include <stdexcept>
#include <thread>
#include <vector>

#include "taskExecutor/TaskExecutor.h"
#include "tests/support/FakePlatform.h"

namespace {

constexpr int PRODUCERS = 4;
constexpr int TASKS_PER_THREAD = 50'000;
constexpr int ONE_IN = 7;  // one task in seven throws

}  // namespace

TEST(TaskContextStormTest, TasksNeverOverlapAlsoWhenSomeOfThemThrow) {
    fake_platform::reset();
    fake_platform::recordNothing();
    const auto executor = TaskExecutor::Create();
    executor->Initiate(0, 0);
    long ran = 0;  // not atomic on purpose: ThreadSanitizer reports two tasks at once
    std::atomic<int> inside = 0;
    std::atomic<int> overlaps = 0;
    std::atomic<int> thrown = 0;
    {
        std::vector<std::jthread> threads;
        for (int thread = 0; thread < PRODUCERS; ++thread) {
            threads.emplace_back([&] {
                for (int i = 0; i < TASKS_PER_THREAD; ++i) {
                    try {
                        executor->Schedule([&, i] {
                            overlaps += inside++ != 0;
                            ++ran;
                            --inside;
                            if (i % ONE_IN == 0) {
                                throw std::runtime_error("task");
                            }
                        });
                    } catch (const std::runtime_error&) {
                        ++thrown;
                    }
                }
            });
        }
    }
    // Run the tasks that a throwing task or a leaving runner left queued.
    for (bool drained = false; !drained;) {
        try {
            executor->Schedule([] {});
            drained = true;
        } catch (const std::runtime_error&) {
            ++thrown;
        }
    }
    EXPECT_EQ(overlaps, 0);
    EXPECT_EQ(ran, long{PRODUCERS} * TASKS_PER_THREAD);
    EXPECT_EQ(thrown, PRODUCERS * ((TASKS_PER_THREAD + ONE_IN - 1) / ONE_IN));
    executor->TerminateSync(0);
    fake_platform::reset();
}

TEST(TaskContextStormTest, ContextsMayEndWhileTheirProducersAreBusy) {
    fake_platform::reset();
    fake_platform::recordNothing();
    for (int round = 0; round < 500; ++round) {
        std::atomic<int> ran = 0;
        int accepted = 0;
        std::atomic<bool> started = false;
        const auto executor = TaskExecutor::Create();
        executor->Initiate(0, 0);
        std::thread producer([&] {
            while (executor->Schedule([&ran] { ++ran; })) {
                ++accepted;
                started = true;
                started.notify_one();
            }
        });
        started.wait(false);
        executor->TerminateSync(20'000);
        producer.join();
        EXPECT_LE(ran, accepted + 1);
        EXPECT_FALSE(executor->Schedule([] {}));
    }
    fake_platform::reset();
}
