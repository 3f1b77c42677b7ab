// Waiting for the fan-outs that have begun, and keeping what they may be using.
#include "FanOuts.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <chrono>
#include <cstddef>
#include <thread>
#include <vector>

#include "Gate.h"

namespace {

struct Left : Retired {
    int reclaimed = 0;
    void reclaim() noexcept override { ++reclaimed; }
};

TEST(FanOutsTest, WhatNobodyUsesIsReclaimedAtOnce) {
    FanOuts fanOuts;
    Left left;
    fanOuts.leave(fanOuts.enter());
    fanOuts.retire(left);
    EXPECT_EQ(left.reclaimed, 1);
}

TEST(FanOutsTest, WhatAFanOutMayUseIsReclaimedWhenItLeaves) {
    FanOuts fanOuts;
    Left first;
    Left second;
    const auto outer = fanOuts.enter();
    fanOuts.retire(first);
    const auto inner = fanOuts.enter();
    ASSERT_NE(outer, inner);
    fanOuts.retire(second);
    EXPECT_EQ(first.reclaimed, 0);
    fanOuts.leave(inner);
    EXPECT_EQ(first.reclaimed, 0);
    EXPECT_EQ(second.reclaimed, 0);
    fanOuts.leave(outer);
    EXPECT_EQ(first.reclaimed, 1);
    EXPECT_EQ(second.reclaimed, 1);
}

TEST(FanOutsTest, FanOutsWithoutAGapKeepLittleOfWhatTheyCannotUse) {
    FanOuts fanOuts;
    std::array<Left, 10> left;
    auto phase = fanOuts.enter();
    for (Left& next : left) {
        fanOuts.retire(next);
        EXPECT_EQ(next.reclaimed, 0);
        const auto overlapping = fanOuts.enter();
        fanOuts.leave(phase);
        phase = overlapping;
    }
    EXPECT_GE(std::ranges::count(left, 1, &Left::reclaimed), 8);
    fanOuts.leave(phase);
    EXPECT_EQ(std::ranges::count(left, 1, &Left::reclaimed), 10);
}

// Phases begin while others count themselves in.
TEST(FanOutsTest, WhatIsRetiredLivesAsLongAsAnybodyUsesIt) {
    struct Value : Retired {
        std::atomic<bool> isAlive = true;
        void reclaim() noexcept override { isAlive = false; }
    };
    FanOuts fanOuts;
    std::vector<Value> values(20'000);
    std::atomic<Value*> current = values.data();
    std::atomic<bool> isOver = false;
    std::atomic<long> dead = 0;
    std::vector<std::thread> readers;
    for (int i = 0; i < 3; ++i) {
        readers.emplace_back([&] {
            while (!isOver) {
                const auto phase = fanOuts.enter();
                const Value* const value = current;
                for (int use = 0; use < 10; ++use) {
                    dead += value->isAlive ? 0 : 1;
                }
                fanOuts.leave(phase);
            }
        });
    }
    for (std::size_t next = 1; next < values.size(); ++next) {
        fanOuts.retire(*current.exchange(&values[next]));
    }
    isOver = true;
    for (std::thread& reader : readers) {
        reader.join();
    }
    EXPECT_EQ(dead, 0);
    EXPECT_EQ(
        std::ranges::count_if(values, [](const Value& value) { return value.isAlive.load(); }), 1);
}

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
