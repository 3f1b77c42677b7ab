// The objects that a call uses live until the call has ended, even if their owner releases them
// during the call.
#include <gtest/gtest.h>

#include <functional>
#include <thread>

#include "daemon/src/Callback/Epochs.h"
#include "daemon/src/broker/RequestBroker.h"
#include "taskExecutor/TaskExecutor.h"
#include "taskExecutor/TaskInvokerImpl.h"
#include "tests/daemon/allocation/Allocations.h"
#include "tests/daemon/allocation/Prepare.h"
#include "tests/support/Events.h"
#include "tests/support/FakePlatform.h"
#include "tests/support/Gate.h"

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

    /// Delivers an event on a new thread, which calls `prepareThread` first. The last subscriber
    /// unsubscribes at the event's first allocation.
    static void expectSourceToOutliveAnEventOn(void (*prepareThread)());
};

void EventLifetimeTest::expectSourceToOutliveAnEventOn(void (*prepareThread)()) {
    TaskInvokerImpl invoker;
    RequestBroker broker(&invoker);
    Receiver receiver;
    Probe probe;
    bool isReclaimedMeanwhile = true;
    const std::function<void()> leave = [&] {
        std::thread([&] {
            GetParam()->unsubscribe(broker);
            deliveryEpochs.retire(probe);
            isReclaimedMeanwhile = probe.isReclaimed;
        }).join();
    };
    GetParam()->subscribe(broker, receiver);
    fake_platform::onDelivery([&] { allocations::beforeNext(leave); });
    std::thread([prepareThread] {
        prepareThread();
        GetParam()->deliver();
    }).join();
    EXPECT_FALSE(isReclaimedMeanwhile);
    EXPECT_TRUE(probe.isReclaimed);
    EXPECT_EQ(fake_platform::callbacksSet(), 0);
}

}  // namespace

// The first allocation is the thread's record in the list of delivering threads.
TEST_P(EventLifetimeTest, TheSourceOutlivesTheFirstEventOfAThread) {
    expectSourceToOutliveAnEventOn([] {});
}

// In an event with a C string, the first allocation is the string's conversion to std::string.
TEST_P(EventLifetimeTest, TheSourceOutlivesALaterEventOfAThread) {
    expectSourceToOutliveAnEventOn([] { const EpochGuard earlier; });
}

INSTANTIATE_TEST_SUITE_P(AllKinds, EventLifetimeTest, testing::ValuesIn(allEvents()),
                         [](const auto& kind) { return kind.param->source; });

TEST(TaskContextLifetimeTest, AContextOutlivesAProducerThatIsStillInACall) {
    fake_platform::reset();
    Gate isInside;
    Gate mayGoOn;
    TaskInvokerImpl invoker;
    const auto contexts = [] { return allocations::outstandingBlocks(sizeof(TaskExecutor)); };
    const long before = contexts();
    // A producer logs this line before it locks the queue.
    fake_platform::onLog([&, main = std::this_thread::get_id()](const fake_platform::Line& line) {
        if (std::this_thread::get_id() != main && line.text.find("_InvokeJob(") != line.text.npos &&
            line.text.ends_with("> Entered\n")) {
            isInside.open();
            mayGoOn.wait();
        }
    });
    std::thread producer([&invoker] { invoker.invokeTask([] { FAIL() << "ran"; }); });
    isInside.wait();
    invoker.terminateTaskExecutor();
    EXPECT_EQ(contexts(), before);
    mayGoOn.open();
    producer.join();
    EXPECT_EQ(contexts(), before - 1);
    EXPECT_EQ(fake_platform::count("context is terminated"), 1);
    fake_platform::reset();
}
