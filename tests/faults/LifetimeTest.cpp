// What an event uses lasts until the event has ended, also when it is given up meanwhile.
#include <gtest/gtest.h>

#include <functional>
#include <thread>

#include "Allocations.h"
#include "Events.h"
#include "FakePlatform.h"
#include "FanOuts.h"
#include "Prepare.h"
#include "RequestBroker.h"
#include "TaskInvokerImpl.h"

namespace {

struct Probe : Retired {
    bool isReclaimed = false;
    void reclaim() noexcept override { isReclaimed = true; }
};

class EventLifetimeTest : public testing::TestWithParam<const Event*> {
protected:
    EventLifetimeTest() {
        prepareDelegator();
        fake_platform::reset();
    }
    ~EventLifetimeTest() override { fake_platform::reset(); }
};

}  // namespace

// Converting a C string allocates, and that is the first thing that a trampoline needs memory for.
TEST_P(EventLifetimeTest, TheSourceOutlivesAnEventThatAllocatesWhileTheLastSubscriberLeaves) {
    TaskInvokerImpl invoker;
    RequestBroker broker(&invoker);
    Receiver receiver;
    Probe probe;
    bool isReclaimedMeanwhile = true;
    const std::function<void()> leave = [&] {
        std::thread([&] {
            GetParam()->unsubscribe(broker);
            allFanOuts.retire(probe);
            isReclaimedMeanwhile = probe.isReclaimed;
        }).join();
    };
    GetParam()->subscribe(broker, receiver);
    fake_platform::onDelivery([&] { allocations::beforeNext(leave); });
    // A thread that has kept no memory of earlier events.
    std::thread([] { GetParam()->deliver(); }).join();
    EXPECT_FALSE(isReclaimedMeanwhile);
    EXPECT_TRUE(probe.isReclaimed);
    EXPECT_EQ(fake_platform::callbacksSet(), 0);
}

INSTANTIATE_TEST_SUITE_P(AllKinds, EventLifetimeTest, testing::ValuesIn(allEvents()),
                         [](const auto& kind) { return kind.param->source; });
