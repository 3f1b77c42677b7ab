// The bounded queue of a task context: producers that wait for room, their timeouts and wake-ups.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <future>
#include <memory>
#include <numeric>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include "taskExecutor/TaskExecutor.h"
#include "tests/support/FakePlatform.h"
#include "tests/support/Gate.h"

using testing::ElementsAre;

namespace {

constexpr int CAPACITY = 10;

/// A context whose runner is blocked inside a task while CAPACITY jobs are queued.
class FullQueueTest : public testing::Test {
protected:
    ~FullQueueTest() override { fake_platform::reset(); }

    void fill(unsigned int timeoutSec) {
        m_executor->Initiate(timeoutSec, CAPACITY);
        m_runner = std::thread([this] {
            m_executor->Schedule([this] {
                m_inside.open();
                m_release.wait();
            });
        });
        m_inside.wait();
        for (int i = 0; i < CAPACITY; ++i) {
            m_executor->Schedule([this, i] { m_ran.push_back(i); });
        }
        fake_platform::reset();
    }
    void drain() {
        m_release.open();
        m_runner.join();
    }

    std::shared_ptr<TaskExecutor> m_executor = TaskExecutor::Create();
    Gate m_inside;
    Gate m_release;
    std::thread m_runner;
    std::vector<int> m_ran;
};

std::vector<int> upTo(int end) {
    std::vector<int> numbers(static_cast<std::size_t>(end));
    std::iota(numbers.begin(), numbers.end(), 0);
    return numbers;
}

}  // namespace

TEST_F(FullQueueTest, AProducerThatFindsNoRoomInTimeGetsADomainError) {
    fill(0);
    try {
        m_executor->Schedule([this] { m_ran.push_back(-1); });
        ADD_FAILURE() << "nothing was thrown";
    } catch (const std::domain_error& error) {
        EXPECT_STREQ(error.what(), "CContext<MostDerived>::_InvokeJob - timeout happen");
    }
    EXPECT_THAT(
        fake_platform::transcript(),
        ElementsAre("D QVX_TPL_CONTEXT TPLContext.h : InvokeTask(#) [0x#] > Entered\n",
                    "D QVX_TPL_CONTEXT TPLContext.h : CTaskJob(#)  TaskJob created\n",
                    "D QVX_TPL_CONTEXT TPLContext.h : _InvokeJob(#) [0x#] > Entered\n",
                    "E QVX_TPL_CONTEXT TPLContext.h : _InvokeJob(#)  timeout happened\n",
                    "D QVX_TPL_CONTEXT TPLContext.h : ~CTaskJob(#)  TaskJob destroyed\n",
                    "E QVX_TPL_CONTEXT TPLContext.h : _InvokeJob(#)  _InvokeJob exception has been "
                    "occured\n",
                    "D QVX_TPL_CONTEXT TPLContext.h : _InvokeJob(#) [0x#]> Left\n",
                    "D QVX_TPL_CONTEXT TPLContext.h : InvokeTask(#) [0x#]> Left\n"));
    drain();
    EXPECT_EQ(m_ran, upTo(CAPACITY));
}

TEST_F(FullQueueTest, AProducerThatTimedOutLeavesTheRunnerAlone) {
    fill(0);
    EXPECT_THROW(m_executor->Schedule([] {}), std::domain_error);
    // If the timeout had cleared the running flag, this call would run the queued jobs.
    m_executor->Initiate(0, 0);
    EXPECT_EQ(m_ran, upTo(0));
    drain();
    EXPECT_EQ(m_ran, upTo(CAPACITY));
}

TEST_F(FullQueueTest, AProducerWaitsUntilTheRunnerMakesRoom) {
    fill(60);
    auto producer = std::async(std::launch::async, [this] {
        return m_executor->Schedule([this] { m_ran.push_back(CAPACITY); });
    });
    EXPECT_EQ(producer.wait_for(std::chrono::milliseconds(50)), std::future_status::timeout);
    EXPECT_EQ(fake_platform::count("task is queued"), 0);
    drain();
    ASSERT_EQ(producer.wait_for(TEST_TIME_LIMIT), std::future_status::ready);
    EXPECT_TRUE(producer.get());
    // If the producer's job was queued while the runner was leaving, the next call runs it.
    m_executor->Schedule([] {});
    EXPECT_EQ(m_ran, upTo(CAPACITY + 1));
}

TEST_F(FullQueueTest, EveryWaitingProducerIsServedAtTheLatestWhenItsTimeIsUp) {
    // Only removing a job from a full queue wakes a producer, and it wakes only one.
    fill(1);
    std::vector<std::future<bool>> producers;
    for (int i = 0; i < 3; ++i) {
        producers.push_back(std::async(std::launch::async, [this] {
            return m_executor->Schedule([this] { m_ran.push_back(CAPACITY); });
        }));
    }
    drain();
    for (auto& producer : producers) {
        EXPECT_TRUE(producer.get());
    }
    m_executor->Schedule([] {});
    EXPECT_EQ(m_ran.size(), CAPACITY + 3U);
}

TEST_F(FullQueueTest, ARaisedLimitIsSeenByAWaitingProducerWhenItsTimeIsUp) {
    fill(1);
    auto producer = std::async(std::launch::async, [this] {
        return m_executor->Schedule([this] { m_ran.push_back(CAPACITY); });
    });
    EXPECT_EQ(producer.wait_for(std::chrono::milliseconds(20)), std::future_status::timeout);
    m_executor->Initiate(1, 0);
    EXPECT_TRUE(producer.get());
    EXPECT_EQ(m_ran, upTo(0)) << "the runner is still inside the first task";
    drain();
    EXPECT_EQ(m_ran, upTo(CAPACITY + 1));
}

TEST(UnlimitedQueueTest, ProducersNeverWait) {
    const auto executor = TaskExecutor::Create();
    executor->Initiate(0, 0);
    int ran = 0;
    executor->Schedule([&] {
        for (int i = 0; i < 1000; ++i) {
            EXPECT_TRUE(executor->Schedule([&ran] { ++ran; }));
        }
        EXPECT_EQ(ran, 0);
    });
    EXPECT_EQ(ran, 1000);
    fake_platform::reset();
}
