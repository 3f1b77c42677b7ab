// Waiting for the fan-outs that have begun.
#include "FanOuts.h"

#include <gtest/gtest.h>

#include <chrono>
#include <thread>

#include "Gate.h"

namespace {

TEST(FanOutsTest, NobodyIsWaitedForWhenNoneIsUnderWay) {
    FanOuts fanOuts;
    fanOuts.leave(fanOuts.enter());
    EXPECT_TRUE(fanOuts.waitForEarlier());
    EXPECT_TRUE(fanOuts.waitForEarlier());
}

TEST(FanOutsTest, OneThatBeganEarlierIsWaitedFor) {
    FanOuts fanOuts;
    Gate entered;
    Gate release;
    bool ended = false;
    std::thread other([&] {
        const auto phase = fanOuts.enter();
        entered.open();
        release.wait();
        ended = true;
        fanOuts.leave(phase);
    });
    entered.wait();
    release.open();
    EXPECT_TRUE(fanOuts.waitForEarlier());
    EXPECT_TRUE(ended);
    other.join();
}

TEST(FanOutsTest, OneThatBeganDuringAnEarlierWaitIsWaitedForByTheNext) {
    FanOuts fanOuts;
    EXPECT_TRUE(fanOuts.waitForEarlier());
    const auto phase = fanOuts.enter();
    EXPECT_FALSE(fanOuts.waitForEarlier());
    fanOuts.leave(phase);
    EXPECT_TRUE(fanOuts.waitForEarlier());
}

// Whatever hangs, the end of many plugins isn't held up many times.
TEST(FanOutsTest, AllWaitsTogetherLastOneSecond) {
    FanOuts fanOuts;
    const auto stuck = fanOuts.enter();
    const auto start = std::chrono::steady_clock::now();
    EXPECT_FALSE(fanOuts.waitForEarlier());
    const auto first = std::chrono::steady_clock::now() - start;
    EXPECT_GE(first, std::chrono::milliseconds(1000));
    const auto alsoStuck = fanOuts.enter();
    for (int i = 0; i < 100; ++i) {
        EXPECT_FALSE(fanOuts.waitForEarlier());
    }
    EXPECT_LT(std::chrono::steady_clock::now() - start, first + std::chrono::milliseconds(1000));
    fanOuts.leave(stuck);
    fanOuts.leave(alsoStuck);
}

}  // namespace
