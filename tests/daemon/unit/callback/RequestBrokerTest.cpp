// The request broker as a plugin uses it: its vtable, profiles shared with other plugins, and tasks
// that the plugin requests.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <thread>
#include <vector>

#include "daemon/src/broker/RequestBroker.h"
#include "taskExecutor/TaskInvokerImpl.h"
#include "tests/support/Events.h"
#include "tests/support/FakePlatform.h"
#include "tests/support/Gate.h"
#include "tests/support/Invokers.h"

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

class RequestBrokerTest : public testing::Test {
protected:
    RequestBrokerTest() { fake_platform::reset(); }
    ~RequestBrokerTest() override {
        for (const Event* const event : allEvents()) {
            event->unsubscribe(m_brokerA);
            event->unsubscribe(m_brokerB);
        }
        fake_platform::reset();
    }

    TaskInvokerImpl m_a;
    TaskInvokerImpl m_b;
    RequestBroker m_brokerA{&m_a};
    RequestBroker m_brokerB{&m_b};
    Receiver m_receiverA;
    Receiver m_receiverB;
};

}  // namespace

TEST_F(RequestBrokerTest, OperationsStandInTheTableInTheOrderOfTheAbi) {
    int slot = 0;
    for (const Event* const event : allEvents()) {
        EXPECT_EQ(event->subscribeSlot(), slot++) << event->subscribeName;
        EXPECT_EQ(event->unsubscribeSlot(), slot++) << event->unsubscribeName;
    }
    EXPECT_EQ(slot, 84);
}

TEST_F(RequestBrokerTest, EverySlotReachesItsOperation) {
    int slot = 0;
    for (const Event* const event : allEvents()) {
        fake_platform::reset();
        EXPECT_EQ(event->subscribeBySlot(m_brokerA, slot++, m_receiverA), 0);
        EXPECT_EQ(event->unsubscribeBySlot(m_brokerA, slot++), 0);
        EXPECT_THAT(fake_platform::calls(), ElementsAre(event->setFunction, event->unsetFunction));
        EXPECT_EQ(fake_platform::count("IN >> [virtual int RequestBroker::" + event->subscribeName +
                                       "(" + event->callbackName + ", void*)("),
                  1);
        EXPECT_EQ(fake_platform::count(
                      "IN >> [virtual int RequestBroker::" + event->unsubscribeName + "()("),
                  1);
    }
}

TEST_F(RequestBrokerTest, TheLastSlotRunsThePluginsOwnWork) {
    IRequestBroker& broker = m_brokerA;
    void** table = *reinterpret_cast<void***>(&broker);
    // In the ABI, the std::function is passed as a reference to the caller's copy.
    using Operation = int (*)(IRequestBroker*, std::function<void(void*)>, void*);
    void* received = nullptr;
    int userData = 0;
    EXPECT_EQ(reinterpret_cast<Operation>(table[2 + 84])(
                  &broker, [&received](void* given) { received = given; }, &userData),
              0);
    EXPECT_EQ(received, &userData);
}

TEST_F(RequestBrokerTest, UnsubscribingFirstThingReturnsZeroAndCallsNothing) {
    for (const Event* const event : allEvents()) {
        EXPECT_EQ(event->unsubscribe(m_brokerA), 0);
    }
    EXPECT_THAT(fake_platform::calls(), IsEmpty());
    EXPECT_EQ(fake_platform::count(") > no callback"), 42);
}

TEST_F(RequestBrokerTest, AnotherPluginsSubscriptionKeepsTheCallbackSet) {
    const Event& event = eventOf(BT_ADAPTER_STATE_CHANGED);
    event.subscribe(m_brokerA, m_receiverA);
    event.subscribe(m_brokerB, m_receiverB);
    event.unsubscribe(m_brokerA);
    EXPECT_EQ(fake_platform::callbacksSet(), 1);
    event.unsubscribe(m_brokerB);
    EXPECT_EQ(fake_platform::callbacksSet(), 0);
}

TEST_F(RequestBrokerTest, EachPluginGetsTheEventOnceWithItsOwnUserData) {
    const Event& event = eventOf(BT_DEVICE_BOND_CREATED);
    event.subscribe(m_brokerA, m_receiverA);
    event.subscribe(m_brokerB, m_receiverB);
    const std::string sent = event.deliver();
    EXPECT_THAT(m_receiverA.events, ElementsAre(sent));
    EXPECT_THAT(m_receiverB.events, ElementsAre(sent));
}

TEST_F(RequestBrokerTest, ASecondSubscriptionOfAPluginIsServedToo) {
    const Event& event = eventOf(BT_ADAPTER_NAME_CHANGED);
    event.subscribe(m_brokerA, m_receiverA);
    event.subscribe(m_brokerA, m_receiverA);
    const std::string sent = event.deliver();
    EXPECT_THAT(m_receiverA.events, ElementsAre(sent, sent));
    event.unsubscribe(m_brokerA);
    EXPECT_EQ(event.deliver(), "not set");
}

TEST_F(RequestBrokerTest, ItsDestructionUndoesNothing) {
    const Event& event = eventOf(BT_ADAPTER_STATE_CHANGED);
    {
        RequestBroker shortLived(&m_a);
        event.subscribe(shortLived, m_receiverA);
    }
    EXPECT_EQ(fake_platform::callbacksSet(), 1);
    const std::string sent = event.deliver();
    EXPECT_THAT(m_receiverA.events, ElementsAre(sent));
}

TEST_F(RequestBrokerTest, APlatformsRefusalNeverReachesThePlugin) {
    fake_platform::setResult(-1);
    for (const Event* const event : allEvents()) {
        EXPECT_EQ(event->subscribe(m_brokerA, m_receiverA), 0);
        EXPECT_EQ(event->unsubscribe(m_brokerA), 0);
    }
}

TEST_F(RequestBrokerTest, ANullCallbackIsStoredLikeAnyOther) {
    EXPECT_EQ(m_brokerA.BtAdapterSetStateChangedCb(nullptr, nullptr), 0);
    EXPECT_EQ(fake_platform::callbacksSet(), 1);
}

TEST_F(RequestBrokerTest, AProfileIsInitialisedForTheFirstPluginAndDeinitialisedAfterTheLast) {
    const CallbackType profiles[] = {BT_HOST_CONNECTION_STATE_CHANGED,
                                     BT_AVRCP_CONTROL_CONNECTION_STATE_CHANGED,
                                     BT_AVRCP_TARGET_CONNECTION_STATE_CHANGED};
    for (const CallbackType type : profiles) {
        const Event& profile = eventOf(type);
        fake_platform::reset();
        profile.subscribe(m_brokerA, m_receiverA);
        profile.subscribe(m_brokerB, m_receiverB);
        EXPECT_THAT(fake_platform::calls(), ElementsAre(profile.setFunction));
        profile.unsubscribe(m_brokerA);
        EXPECT_THAT(fake_platform::calls(), ElementsAre(profile.setFunction));
        profile.unsubscribe(m_brokerB);
        EXPECT_THAT(fake_platform::calls(),
                    ElementsAre(profile.setFunction, profile.unsetFunction));
    }
}

TEST_F(RequestBrokerTest, AProfileInitialisedTwiceByItsOnlyUserGoesWithOneDeinitialise) {
    m_brokerA.BtAvrcpControlInitialize(nullptr, nullptr);
    m_brokerA.BtAvrcpControlInitialize(nullptr, nullptr);
    m_brokerA.BtAvrcpControlDeinitialize();
    EXPECT_THAT(fake_platform::calls(),
                ElementsAre("bt_avrcp_control_initialize", "bt_avrcp_control_deinitialize"));
}

TEST_F(RequestBrokerTest, RequestedWorkRunsBeforeTheRequestReturns) {
    std::vector<void*> received;
    int userData = 0;
    EXPECT_EQ(m_brokerA.RequestToInvokeInTaskExecutor(
                  [&received](void* given) { received.push_back(given); }, &userData),
              0);
    EXPECT_THAT(received, ElementsAre(&userData));
    const std::string signature =
        "[virtual int RequestBroker::RequestToInvokeInTaskExecutor(std::function<void(void*)>, "
        "void*)(#)]";
    EXPECT_EQ(fake_platform::transcript().front(),
              "D QVX log.h: ApiTracker(#) > IN >> " + signature);
    EXPECT_EQ(fake_platform::transcript().back(),
              "D QVX log.h: ~ApiTracker(#) > OUT << " + signature);
    EXPECT_EQ(fake_platform::count("CallbackDelegator"), 0);
}

TEST_F(RequestBrokerTest, RequestedWorkWaitsBehindTheTasksOfAnotherThread) {
    Gate inside;
    Gate release;
    std::vector<std::string> ran;
    std::thread::id ranOn;
    std::thread runner([&] {
        m_brokerA.RequestToInvokeInTaskExecutor(
            [&](void*) {
                inside.open();
                release.wait();
                ran.push_back("first");
            },
            nullptr);
    });
    const std::thread::id runnerId = runner.get_id();
    inside.wait();
    const auto later = [&](void*) {
        ran.push_back("second");
        ranOn = std::this_thread::get_id();
    };
    EXPECT_EQ(m_brokerA.RequestToInvokeInTaskExecutor(later, nullptr), 0);
    EXPECT_THAT(ran, IsEmpty());
    release.open();
    runner.join();
    EXPECT_THAT(ran, ElementsAre("first", "second"));
    EXPECT_EQ(ranOn, runnerId);
}

TEST_F(RequestBrokerTest, EmptyWorkFailsInTheThreadThatRunsIt) {
    EXPECT_THROW(m_brokerA.RequestToInvokeInTaskExecutor(nullptr, nullptr), std::bad_function_call);
}

TEST_F(RequestBrokerTest, EmptyWorkBehindARunningTaskIsAccepted) {
    int result = -1;
    EXPECT_THROW(
        m_brokerA.RequestToInvokeInTaskExecutor(
            [&](void*) { result = m_brokerA.RequestToInvokeInTaskExecutor(nullptr, nullptr); },
            nullptr),
        std::bad_function_call);
    EXPECT_EQ(result, 0);
}
