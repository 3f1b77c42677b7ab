// Counts the heap allocations of an event, a task and a trace line. A thread's first event, which
// allocates more, is not counted.
#include <bluetooth.h>
#include <gtest/gtest.h>

#include <array>
#include <functional>
#include <thread>

#include "daemon/src/Callback/BluetoothCallback.h"
#include "daemon/src/broker/RequestBroker.h"
#include "daemon/src/common/log.h"
#include "taskExecutor/TaskInvokerImpl.h"
#include "tests/daemon/allocation/Allocations.h"
#include "tests/daemon/allocation/Prepare.h"
#include "tests/support/FakePlatform.h"

namespace {

template <typename Function>
long allocationsOf(Function function) {
    allocations::failAt(0, allocations::Failing::Once);  // only counts
    function();
    allocations::succeed();
    return allocations::made();
}

class AllocationCountTest : public testing::Test {
protected:
    void SetUp() override {
        prepareDelegator();
        fake_platform::reset();
        fake_platform::recordNothing();
    }
};

TEST_F(AllocationCountTest, AnEventForEightPluginsNeedsNone) {
    struct Plugin {
        TaskInvokerImpl invoker;
        RequestBroker broker{&invoker};
        int events = 0;
    };
    std::array<Plugin, 8> plugins;
    for (Plugin& plugin : plugins) {
        plugin.broker.BtAdapterSetStateChangedCb(
            [](int, bt_adapter_state_e, void* events) { ++*static_cast<int*>(events); },
            &plugin.events);
    }
    const auto slot = fake_platform::slot("bt_adapter_set_state_changed_cb");
    const auto callback = reinterpret_cast<bt_adapter_state_changed_cb>(slot.callback);
    callback(0, BT_ADAPTER_STATE_OFF, slot.userData);
    EXPECT_EQ(allocationsOf([&] { callback(0, BT_ADAPTER_STATE_ON, slot.userData); }), 0);
    for (Plugin& plugin : plugins) {
        EXPECT_EQ(plugin.events, 2);
        plugin.broker.BtAdapterUnsetStateChangedCb();
    }
}

TEST_F(AllocationCountTest, ATaskOfTwoWordsNeedsNone) {
    TaskInvokerImpl invoker;
    int ran = 0;
    int step = 1;
    EXPECT_EQ(allocationsOf([&] { invoker.invokeTask([&ran, &step] { ran += step; }); }), 0);
    EXPECT_EQ(ran, 1);
}

TEST_F(AllocationCountTest, TheTaskOfAnEventWithoutArgumentsNeedsNoneOnAThreadThatKeepsNone) {
    BtAvrcpVolumeNotifyCb notify;
    CallbackImpl<bt_avrcp_volume_notified_cb>& source = notify;
    std::thread([&source] {
        std::function<void()> task;
        int notified = 0;
        EXPECT_EQ(allocationsOf([&] {
                      task = source.getInvokingTask(
                          [](void* count) { ++*static_cast<int*>(count); }, &notified);
                  }),
                  0);
        task();
        EXPECT_EQ(notified, 1);
    }).join();
}

TEST_F(AllocationCountTest, ATracedNameNeedsNone) {
    EXPECT_EQ(allocationsOf([] {
                  const ApiTracker tracker("void aFunctionWithAnOrdinarySignature(int)", __LINE__);
              }),
              0);
}

}  // namespace
