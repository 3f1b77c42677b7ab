// The subscriber list of one event source: order, removal, and changes during a delivery.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstddef>
#include <functional>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "daemon/src/Callback/BluetoothCallback.h"
#include "daemon/src/Callback/CallbackImpl.h"
#include "tests/support/FakePlatform.h"
#include "tests/support/HeapInUse.h"
#include "tests/support/Invokers.h"
#include "tests/support/SizeType.h"

using testing::ElementsAre;

namespace {

std::vector<std::string> g_received;

void receiveA(int, bt_adapter_state_e, void*) {
    g_received.push_back("A");
}
void receiveB(int, bt_adapter_state_e, void*) {
    g_received.push_back("B");
}
void receiveC(int, bt_adapter_state_e, void*) {
    g_received.push_back("C");
}
void receiveNothing(void* userData) {
    g_received.push_back(*static_cast<const std::string*>(userData));
}

class CallbackImplTest : public testing::Test {
protected:
    CallbackImplTest() { g_received.clear(); }
    ~CallbackImplTest() override { fake_platform::reset(); }

    void event() {
        const EpochGuard guard;
        m_source.onCallback(0, BT_ADAPTER_STATE_ON);
    }

    BtAdapterStateChangedCb m_source;
    DirectTaskInvoker m_a;
    DirectTaskInvoker m_b;
    DirectTaskInvoker m_c;
};

}  // namespace

TEST_F(CallbackImplTest, SubscribersAreServedInTheOrderTheySubscribed) {
    m_source.add(&m_a, receiveA, nullptr);
    m_source.add(&m_b, receiveB, nullptr);
    m_source.add(&m_c, receiveC, nullptr);
    event();
    EXPECT_THAT(g_received, ElementsAre("A", "B", "C"));
    EXPECT_EQ(fake_platform::count("CallbackImpl.h: onCallback("), 3);
}

TEST_F(CallbackImplTest, EachSubscribersInvokerGetsItsTask) {
    QueueTaskInvoker a;
    QueueTaskInvoker b;
    m_source.add(&a, receiveA, nullptr);
    m_source.add(&b, receiveB, nullptr);
    event();
    EXPECT_EQ(a.tasks.size(), 1U);
    EXPECT_EQ(b.tasks.size(), 1U);
    b.runAll();
    a.runAll();
    EXPECT_THAT(g_received, ElementsAre("B", "A"));
}

TEST_F(CallbackImplTest, ASecondSubscriptionIsServedAgainAndOneRemoveTakesBoth) {
    m_source.add(&m_a, receiveA, nullptr);
    m_source.add(&m_b, receiveB, nullptr);
    m_source.add(&m_a, receiveC, nullptr);
    event();
    EXPECT_THAT(g_received, ElementsAre("A", "B", "C"));
    EXPECT_EQ(m_source.remove(&m_a), 1U);
    event();
    EXPECT_THAT(g_received, ElementsAre("A", "B", "C", "B"));
}

TEST_F(CallbackImplTest, RemovingTheMiddleOneKeepsTheOrderOfTheOthers) {
    m_source.add(&m_a, receiveA, nullptr);
    m_source.add(&m_b, receiveB, nullptr);
    m_source.add(&m_c, receiveC, nullptr);
    EXPECT_EQ(m_source.remove(&m_b), 2U);
    event();
    EXPECT_THAT(g_received, ElementsAre("A", "C"));
}

TEST_F(CallbackImplTest, RemovingAStrangerChangesNothing) {
    m_source.add(&m_a, receiveA, nullptr);
    EXPECT_EQ(m_source.remove(&m_b), 1U);
    event();
    EXPECT_THAT(g_received, ElementsAre("A"));
}

TEST_F(CallbackImplTest, RemoveIsTracedUnderItsFullSignature) {
    fake_platform::reset();
    m_source.remove(&m_a);
    const std::string signature =
        std::string(
            "[size_t CallbackImpl<CallbackFunction, Types>::remove(ITaskInvoker*) [with "
            "CallbackFunction = void (*)(int, bt_adapter_state_e, void*); Types = {int, "
            "bt_adapter_state_e}; size_t = ") +
        SIZE_TYPE + "](#)]";
    EXPECT_THAT(fake_platform::transcript(),
                ElementsAre("D QVX log.h: ApiTracker(#) > IN >> " + signature,
                            "I QVX CallbackImpl.h: remove(#) > remove invoker : 0x#",
                            "D QVX log.h: ~ApiTracker(#) > OUT << " + signature));
}

TEST_F(CallbackImplTest, AnEventWithoutArgumentsBringsTheUserDataAlone) {
    BtAvrcpVolumeNotifyCb source;
    std::string first = "first";
    std::string second = "second";
    std::string third = "third";
    source.add(&m_a, receiveNothing, &first);
    source.add(&m_b, receiveNothing, &second);
    source.add(&m_c, receiveNothing, &third);
    source.onCallback();
    EXPECT_THAT(g_received, ElementsAre("first", "second", "third"));
}

TEST_F(CallbackImplTest, ChangesDuringAFanOutTakeEffectFromTheNextEventOn) {
    struct ChangingInvoker : ITaskInvoker {
        std::function<void()> change;
        void invokeTask(const ITaskInvoker::Task& task) override {
            task();
            change();
        }
    } changing;
    changing.change = [&] {
        m_source.add(&m_c, receiveC, nullptr);
        m_source.remove(&m_b);
    };
    m_source.add(&changing, receiveA, nullptr);
    m_source.add(&m_b, receiveB, nullptr);
    event();
    EXPECT_THAT(g_received, ElementsAre("A", "B"));
    changing.change = [] {};
    g_received.clear();
    event();
    EXPECT_THAT(g_received, ElementsAre("A", "C"));
}

TEST_F(CallbackImplTest, AnExceptionEndsTheFanOutAndLeavesTheSourceUsable) {
    struct ThrowingInvoker : ITaskInvoker {
        void invokeTask(const ITaskInvoker::Task&) override { throw std::runtime_error("full"); }
    } throwing;
    m_source.add(&throwing, receiveA, nullptr);
    m_source.add(&m_b, receiveB, nullptr);
    EXPECT_THROW(event(), std::runtime_error);
    EXPECT_THAT(g_received, ElementsAre());
    EXPECT_EQ(m_source.remove(&throwing), 1U);
    event();
    EXPECT_THAT(g_received, ElementsAre("B"));
}

TEST_F(CallbackImplTest, TwoFanOutsOfOneSourceMayNest) {
    struct NestingInvoker : ITaskInvoker {
        std::function<void()> inner;
        void invokeTask(const ITaskInvoker::Task& task) override {
            task();
            std::exchange(inner, [] {})();
        }
    } nesting;
    nesting.inner = [this] { event(); };
    m_source.add(&nesting, receiveA, nullptr);
    m_source.add(&m_b, receiveB, nullptr);
    event();
    EXPECT_THAT(g_received, ElementsAre("A", "A", "B", "B"));
}

TEST_F(CallbackImplTest, ListsReplacedDuringFanOutsDoNotPileUp) {
    struct ComingAndGoing : ITaskInvoker {
        std::function<void()> comeAndGo;
        void invokeTask(const ITaskInvoker::Task&) override { comeAndGo(); }
    } restless;
    restless.comeAndGo = [&] {
        m_source.remove(&m_b);
        m_source.add(&m_b, receiveB, nullptr);
    };
    m_source.add(&restless, receiveA, nullptr);
    m_source.add(&m_b, receiveB, nullptr);
    fake_platform::recordNothing();
    event();
    g_received.clear();
    g_received.reserve(1000);
    const std::size_t before = heapInUse();
    for (int i = 0; i < 1000; ++i) {
        event();
    }
    EXPECT_LT(heapInUse(), before + 10'000);
}
