// Checks all 42 event sources against one table: the platform callbacks they set and unset, the
// lines they log, and that a plugin receives copies that outlive the platform's buffers.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <set>
#include <string>
#include <vector>

#include "daemon/src/Callback/CallbackDelegator.h"
#include "daemon/src/broker/RequestBroker.h"
#include "tests/support/Events.h"
#include "tests/support/FakePlatform.h"
#include "tests/support/Invokers.h"

using testing::ElementsAre;

namespace {

class EventSourcesTest : public testing::TestWithParam<const Event*> {
protected:
    EventSourcesTest() { fake_platform::reset(); }
    ~EventSourcesTest() override {
        m_event.unsubscribe(m_brokerA);
        m_event.unsubscribe(m_brokerB);
        fake_platform::reset();
    }

    fake_platform::Slot slot() const { return fake_platform::slot(m_event.setFunction); }

    std::string tracedIn(const std::string& signature) const {
        return "D QVX log.h: ApiTracker(#) > IN >> [" + signature + "(#)]";
    }
    std::string tracedOut(const std::string& signature) const {
        return "D QVX log.h: ~ApiTracker(#) > OUT << [" + signature + "(#)]";
    }
    std::string getInvokingTask() const {
        const std::string arguments =
            m_event.argumentTypes.empty() ? "" : m_event.argumentTypes + ", ";
        return "virtual std::function<void()> " + m_event.source + "::getInvokingTask(" +
               m_event.callbackName + ", " + arguments + "void*)";
    }

    const Event& m_event = *GetParam();
    QueueTaskInvoker m_a;
    QueueTaskInvoker m_b;
    RequestBroker m_brokerA{&m_a};
    RequestBroker m_brokerB{&m_b};
    Receiver m_receiverA;
    Receiver m_receiverB;
};

}  // namespace

TEST_P(EventSourcesTest, SubscribingSetsThePlatformCallback) {
    const std::string operation = "virtual int RequestBroker::" + m_event.subscribeName + "(" +
                                  m_event.callbackName + ", void*)";
    const std::string constructor = m_event.source + "::" + m_event.source + "()";
    const std::string set = "virtual void " + m_event.source + "::registerCallback()";
    Singleton<CallbackDelegator>::getInstance();
    fake_platform::reset();
    EXPECT_EQ(m_event.subscribe(m_brokerA, m_receiverA), 0);
    const std::string list =
        "std::map<CallbackType, std::unique_ptr<ICallback> >& "
        "CallbackDelegator::getCallbackList(CallbackType)";
    EXPECT_THAT(
        fake_platform::transcript(),
        ElementsAre(tracedIn(operation), tracedIn(list), tracedOut(list),
                    "I QVX CallbackDelegator.h: registerCallback(#) > no callback, crate callback.",
                    tracedIn(constructor), tracedOut(constructor), tracedIn(set),
                    "call " + m_event.setFunction, tracedOut(set),
                    "I QVX CallbackDelegator.h: registerCallback(#) > task invoker : 0x#, "
                    "callback : 0x#",
                    tracedOut(operation)));
    EXPECT_EQ(slot().sets, 1);

    EXPECT_EQ(m_event.subscribe(m_brokerB, m_receiverB), 0);
    EXPECT_EQ(slot().sets, 1);
}

TEST_P(EventSourcesTest, TheLastUnsubscribingUnsetsThePlatformCallback) {
    m_event.subscribe(m_brokerA, m_receiverA);
    m_event.subscribe(m_brokerB, m_receiverB);
    EXPECT_EQ(m_event.unsubscribe(m_brokerA), 0);
    EXPECT_EQ(slot().unsets, 0);
    fake_platform::reset();
    EXPECT_EQ(m_event.unsubscribe(m_brokerB), 0);
    EXPECT_THAT(fake_platform::calls(), ElementsAre(m_event.unsetFunction));

    const std::string operation = "virtual int RequestBroker::" + m_event.unsubscribeName + "()";
    const std::string unregister =
        "int CallbackDelegator::unregisterCallback(CallbackType, ITaskInvoker*) [with "
        "CallbackClass = " +
        m_event.source + "]";
    const std::string destructor = "virtual " + m_event.source + "::~" + m_event.source + "()";
    const std::string unset = "virtual void " + m_event.source + "::unregisterCallback()";
    const auto transcript = fake_platform::transcript();
    ASSERT_GE(transcript.size(), 12U);
    EXPECT_EQ(transcript[0], tracedIn(operation));
    EXPECT_EQ(transcript[1], tracedIn(unregister));
    const std::vector<std::string> tail(transcript.end() - 7, transcript.end());
    EXPECT_THAT(tail,
                ElementsAre(tracedIn(destructor), tracedIn(unset), "call " + m_event.unsetFunction,
                            tracedOut(unset), tracedOut(destructor), tracedOut(unregister),
                            tracedOut(operation)));

    fake_platform::reset();
    EXPECT_EQ(m_event.unsubscribe(m_brokerB), 0);
    EXPECT_EQ(fake_platform::count("unregisterCallback"), 3);
    EXPECT_EQ(fake_platform::count(") > no callback"), 1);
    EXPECT_THAT(fake_platform::calls(), ElementsAre());
}

TEST_P(EventSourcesTest, ThePlatformsUserDataIsTheRegisteredSource) {
    m_event.subscribe(m_brokerA, m_receiverA);
    CallbackDelegator* const delegator = Singleton<CallbackDelegator>::getInstance();
    const MutexLock lock(delegator->mutex());
    const auto& sources = delegator->getCallbackList(m_event.type);
    EXPECT_EQ(slot().userData, dynamic_cast<void*>(sources.at(m_event.type).get()));
}

TEST_P(EventSourcesTest, EachSubscriberGetsCopiesOfItsOwnAfterThePlatformsBuffersAreGone) {
    m_event.subscribe(m_brokerA, m_receiverA);
    m_event.subscribe(m_brokerB, m_receiverB);
    const std::string sent = m_event.deliver();
    EXPECT_THAT(m_receiverA.events, ElementsAre());
    m_a.runAll();
    EXPECT_THAT(m_receiverA.events, ElementsAre(sent));
    EXPECT_THAT(m_receiverB.events, ElementsAre());
    m_b.runAll();
    EXPECT_THAT(m_receiverB.events, ElementsAre(sent));
}

TEST_P(EventSourcesTest, TasksOutliveTheirSource) {
    m_event.subscribe(m_brokerA, m_receiverA);
    const std::string sent = m_event.deliver();
    m_event.unsubscribe(m_brokerA);
    EXPECT_EQ(m_event.deliver(), "not set");
    m_a.runAll();
    EXPECT_THAT(m_receiverA.events, ElementsAre(sent));
}

TEST_P(EventSourcesTest, AnEventIsTracedOncePerSubscriber) {
    m_event.subscribe(m_brokerA, m_receiverA);
    m_event.subscribe(m_brokerB, m_receiverB);
    const auto before = fake_platform::transcript().size();
    m_event.deliver();
    const auto transcript = fake_platform::transcript();
    const std::vector<std::string> event(transcript.begin() + static_cast<std::ptrdiff_t>(before),
                                         transcript.end());
    EXPECT_EQ(event.front(), "I QVX CallbackImpl.h: onCallback(#) > invoker : 0x#");
    EXPECT_EQ(event[1], tracedIn(getInvokingTask()));
    EXPECT_EQ(event.back(), tracedOut(getInvokingTask()));
    EXPECT_EQ(std::count(event.begin(), event.end(), tracedIn(getInvokingTask())), 2);
    const bool copyLogs = m_event.type == BT_HID_BATTERY_STATUS_RECEIVED;
    const bool copyTraced = m_event.type == BT_ADAPTER_DEVICE_DISCOVERY_STATE_CHANGED;
    m_a.runAll();  // a connection task that never runs leaks its address
    m_b.runAll();
    EXPECT_EQ(event.size(), 2U * (3U + (copyLogs ? 1U : 0U) + (copyTraced ? 2U : 0U)));
}

TEST_P(EventSourcesTest, OnlyTwoSourcesLogWhenTheirTaskRuns) {
    m_event.subscribe(m_brokerA, m_receiverA);
    m_event.deliver();
    const auto before = fake_platform::transcript().size();
    m_a.runAll();
    const auto logged = fake_platform::transcript().size() - before;
    if (m_event.type == BT_DEVICE_CONNECTION_STATE_CHANGED) {
        EXPECT_EQ(fake_platform::transcript().back(),
                  "I QVX BluetoothCallback.h: operator()(#) > addr : AA:BB:CC:DD:EE:03, link : 1, "
                  "disc reason : 3");
    } else if (m_event.type == BT_AVRCP_REMOTE_FEATURES) {
        EXPECT_EQ(fake_platform::transcript().back(),
                  "I QVX BluetoothCallback.h: operator()(#) > remote addr : AA:BB:CC:DD:EE:05, "
                  "service name : service, provider name : provider, feature : 9");
    } else {
        EXPECT_EQ(logged, 0U);
        return;
    }
    EXPECT_EQ(logged, 1U);
}

INSTANTIATE_TEST_SUITE_P(All, EventSourcesTest, testing::ValuesIn(allEvents()),
                         [](const auto& test) { return test.param->source; });

TEST(EventTableTest, HoldsEveryTypeOnceWithItsValue) {
    std::set<unsigned int> values;
    std::set<std::string> functions;
    for (const Event* const event : allEvents()) {
        EXPECT_EQ(event->type, event->value) << event->typeName;
        values.insert(event->value);
        functions.insert(event->setFunction);
        functions.insert(event->unsetFunction);
    }
    EXPECT_EQ(values.size(), 42U);
    EXPECT_EQ(functions.size(), 84U);
    for (unsigned int index = 1; index <= 40; ++index) {
        EXPECT_TRUE(values.contains((1U << 24) | index)) << index;
    }
}
