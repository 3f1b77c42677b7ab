// Running deliveries: objects they may use are kept, and a thread can wait for their end.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <chrono>
#include <cstddef>
#include <memory>
#include <thread>
#include <type_traits>
#include <vector>

#include "daemon/src/Callback/Epochs.h"
#include "tests/support/Gate.h"
#include "tests/support/HeapInUse.h"

namespace {

using std::chrono::steady_clock;

// A thread may deliver while the process exits.
static_assert(!std::is_destructible_v<Epochs>);

struct Object : Retired {
    int reclaimed = 0;
    void reclaim() noexcept override { ++reclaimed; }
};

/// A delivery on a new thread. It lasts until end() or the destructor is called.
class Delivery {
public:
    Delivery() { m_begun.wait(); }
    ~Delivery() { end(); }
    Delivery(const Delivery&) = delete;
    Delivery& operator=(const Delivery&) = delete;

    void end() {
        if (m_thread.joinable()) {
            m_mayEnd.open();
            m_thread.join();
        }
    }

private:
    Gate m_begun;
    Gate m_mayEnd;
    std::thread m_thread{[this] {
        const EpochGuard guard;
        m_begun.open();
        m_mayEnd.wait();
    }};
};

steady_clock::time_point in(std::chrono::milliseconds time) {
    return steady_clock::now() + time;
}

constexpr std::chrono::milliseconds MOMENT{20};

}  // namespace

TEST(EpochsTest, WhatNoDeliveryUsesIsReclaimedAtOnce) {
    Object object;
    { const EpochGuard ended; }
    deliveryEpochs.retire(object);
    EXPECT_EQ(object.reclaimed, 1);
}

TEST(EpochsTest, WhatADeliveryMayUseIsReclaimedWhenItEnds) {
    Object object;
    Delivery delivery;
    deliveryEpochs.retire(object);
    EXPECT_EQ(object.reclaimed, 0);
    delivery.end();
    EXPECT_EQ(object.reclaimed, 1);
}

TEST(EpochsTest, DeliveriesThatBeganLaterHoldUpNothing) {
    std::array<Object, 10> objects;
    auto delivery = std::make_unique<Delivery>();
    for (Object& object : objects) {
        deliveryEpochs.retire(object);
        EXPECT_EQ(object.reclaimed, 0);
        auto overlapping = std::make_unique<Delivery>();
        delivery = std::move(overlapping);
        EXPECT_EQ(object.reclaimed, 1);
    }
}

TEST(EpochsTest, NestedDeliveriesLastAsLongAsTheOutermost) {
    Object object;
    {
        const EpochGuard outer;
        {
            const EpochGuard inner;
            deliveryEpochs.retire(object);
        }
        EXPECT_EQ(object.reclaimed, 0);
    }
    EXPECT_EQ(object.reclaimed, 1);
}

// New epochs begin while deliveries begin on other threads.
TEST(EpochsTest, WhatIsRetiredLivesAsLongAsADeliveryUsesIt) {
    struct Value : Retired {
        std::atomic<bool> isAlive = true;
        void reclaim() noexcept override { isAlive = false; }
    };
    std::vector<Value> values(20'000);
    std::atomic<Value*> current = values.data();
    std::atomic<bool> isOver = false;
    std::atomic<long> dead = 0;
    std::vector<std::thread> readers;
    for (int i = 0; i < 3; ++i) {
        readers.emplace_back([&] {
            while (!isOver) {
                const EpochGuard guard;
                const Value* const value = current;
                for (int use = 0; use < 10; ++use) {
                    dead += value->isAlive ? 0 : 1;
                }
            }
        });
    }
    for (std::size_t next = 1; next < values.size(); ++next) {
        deliveryEpochs.retire(*current.exchange(&values[next]));
    }
    isOver = true;
    for (std::thread& reader : readers) {
        reader.join();
    }
    EXPECT_EQ(dead, 0);
    EXPECT_EQ(
        std::ranges::count_if(values, [](const Value& value) { return value.isAlive.load(); }), 1);
}

TEST(EpochsTest, ThreadsThatEndLeaveTheirPlaceToOthers) {
    { const Delivery first; }
    const std::size_t before = heapInUse();
    for (int i = 0; i < 200; ++i) {
        const Delivery next;
    }
    EXPECT_LT(heapInUse(), before + 10'000);
}

TEST(EpochsTest, AWaitEndsAtOnceWhenNoDeliveryIsUnderWay) {
    { const EpochGuard ended; }
    EXPECT_TRUE(deliveryEpochs.waitForEarlier(in(std::chrono::milliseconds(0))));
}

TEST(EpochsTest, AWaitEndsWithTheLastDeliveryThatBeganEarlier) {
    Gate begun;
    Gate mayEnd;
    bool hasEnded = false;
    std::thread other([&] {
        const EpochGuard guard;
        begun.open();
        mayEnd.wait();
        hasEnded = true;
    });
    begun.wait();
    mayEnd.open();
    EXPECT_TRUE(deliveryEpochs.waitForEarlier(in(TEST_TIME_LIMIT)));
    EXPECT_TRUE(hasEnded);
    other.join();
}

TEST(EpochsTest, AWaitEndsAtItsDeadline) {
    const Delivery stuck;
    const auto start = steady_clock::now();
    EXPECT_FALSE(deliveryEpochs.waitForEarlier(start + MOMENT));
    EXPECT_GE(steady_clock::now() - start, MOMENT);
}

TEST(EpochsTest, ADeliveryThatWasGivenUpIsNotWaitedForAgain) {
    const Delivery stuck;
    EXPECT_FALSE(deliveryEpochs.waitForEarlier(in(MOMENT)));
    EXPECT_TRUE(deliveryEpochs.waitForEarlier(in(std::chrono::milliseconds(0))));
}

TEST(EpochsTest, AWaitThatWasGivenUpLeavesLaterOnesTheirTime) {
    const Delivery stuck;
    EXPECT_FALSE(deliveryEpochs.waitForEarlier(in(MOMENT)));
    Delivery later;
    EXPECT_FALSE(deliveryEpochs.waitForEarlier(in(MOMENT)));
    Delivery last;
    std::thread ender([&] { last.end(); });
    EXPECT_TRUE(deliveryEpochs.waitForEarlier(in(TEST_TIME_LIMIT)));
    ender.join();
}

TEST(EpochsTest, WhatAGivenUpDeliveryMayUseIsKept) {
    Object object;
    Delivery stuck;
    EXPECT_FALSE(deliveryEpochs.waitForEarlier(in(MOMENT)));
    deliveryEpochs.retire(object);
    EXPECT_EQ(object.reclaimed, 0);
    stuck.end();
    EXPECT_EQ(object.reclaimed, 1);
}
