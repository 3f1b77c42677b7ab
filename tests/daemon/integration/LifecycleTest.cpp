// The daemon's start and shutdown: their order, their thread and the exit status, for each way in
// which the main loop can end.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/support/process/DaemonLog.h"
#include "tests/support/process/Sandbox.h"

using testing::Each;
using testing::Field;

namespace {

class DaemonLifecycleTest : public testing::Test {
protected:
    static std::string story(const Log& log) { return log.ofTags({"PLATFORM", "FIXTURE"}).texts(); }

    Sandbox m_sandbox;
};

TEST_F(DaemonLifecycleTest, GoesDownInTheReverseOfItsWayUp) {
    m_sandbox.addPlugin("libfoo.so");
    const Outcome outcome = m_sandbox.startAndTerminate();
    EXPECT_EQ(story(outcome.log),
              "ecore_init\n"
              "bt_product_init\n"
              "bt_audio_initialize\n"
              "libfoo.so: opened\n"
              "libfoo.so: init\n"
              "ecore_main_loop_begin\n"
              "ecore_main_loop_begin returned\n"
              "libfoo.so: deinit\n"
              "libfoo.so: closed\n"
              "bt_product_deinit\n"
              "bt_audio_deinitialize\n"
              "ecore_shutdown\n");
    EXPECT_EQ(outcome.status, 0);
}

TEST_F(DaemonLifecycleTest, APluginMayEndTheMainLoop) {
    m_sandbox.addPlugin("libbleapp.so");
    m_sandbox.addPlugin("libquits.so", "quits_main_loop");
    const Outcome outcome = m_sandbox.runToItsEnd();
    EXPECT_EQ(story(outcome.log),
              "ecore_init\n"
              "bt_product_init\n"
              "bt_audio_initialize\n"
              "libbleapp.so: opened\n"
              "libbleapp.so: init\n"
              "libquits.so: opened\n"
              "libquits.so: init\n"
              "ecore_main_loop_begin\n"
              "libquits.so: quits the main loop\n"
              "ecore_main_loop_begin returned\n"
              "libbleapp.so: deinit\n"
              "libbleapp.so: closed\n"
              "libquits.so: deinit\n"
              "libquits.so: closed\n"
              "bt_product_deinit\n"
              "bt_audio_deinitialize\n"
              "ecore_shutdown\n");
    EXPECT_EQ(outcome.status, 0);
}

TEST_F(DaemonLifecycleTest, PluginsGoDownInLoadOrderHighestPriorityFirst) {
    for (const char* name :
         {"libbleapp.so", "libbtapp-lite.so", "libZarnDongleDetectNotification.so", "libfoo.so"}) {
        m_sandbox.addPlugin(name);
    }
    m_sandbox.addMarkerFile();
    m_sandbox.setProductType(8);
    const Log log = m_sandbox.startAndTerminate().log;
    EXPECT_EQ(log.from("ecore_main_loop_begin returned").ofTags({"FIXTURE"}).texts(),
              "libZarnDongleDetectNotification.so: deinit\n"
              "libZarnDongleDetectNotification.so: closed\n"
              "libbtapp-lite.so: deinit\n"
              "libbtapp-lite.so: closed\n"
              "libbleapp.so: deinit\n"
              "libbleapp.so: closed\n"
              "libfoo.so: deinit\n"
              "libfoo.so: closed\n");
}

TEST_F(DaemonLifecycleTest, EveryLibraryIsClosedBeforeTheFirstTaskExecutorEnds) {
    for (const char* name : {"liba.so", "libb.so", "libc.so"}) {
        m_sandbox.addPlugin(name);
    }
    const Log log = m_sandbox.startAndTerminate().log;
    const char* const executorEnds = "IN >> [void TaskInvokerImpl::terminateTaskExecutor()";
    EXPECT_EQ(log.upTo(executorEnds).count(": closed"), 3U);
    EXPECT_EQ(log.count(executorEnds), 3U);
}

TEST_F(DaemonLifecycleTest, ALibraryWithoutADeinitEntryIsClosedWithoutALine) {
    m_sandbox.addPlugin("libfoo.so", "no_deinit");
    const Outcome outcome = m_sandbox.startAndTerminate();
    EXPECT_FALSE(outcome.log.contains("deinit func"));
    EXPECT_TRUE(outcome.log.from("IN >> [void Plugin::unloadServicePlugin()")
                    .upTo("OUT << [void Plugin::unloadServicePlugin()")
                    .contains("libfoo.so: closed"));
    EXPECT_EQ(outcome.status, 0);
}

TEST_F(DaemonLifecycleTest, ABluetoothStackThatFailsChangesNothing) {
    m_sandbox.addPlugin("libfoo.so");
    const std::string ordinary = m_sandbox.startAndTerminate().log.transcript();
    m_sandbox.failPlatformCalls(
        "bt_product_init bt_audio_initialize bt_product_deinit bt_audio_deinitialize");
    const Outcome outcome = m_sandbox.startAndTerminate();
    EXPECT_EQ(outcome.log.transcript(), ordinary);
    EXPECT_EQ(outcome.status, 0);
}

TEST_F(DaemonLifecycleTest, NothingHappensWhenTheMainLoopLibraryFails) {
    m_sandbox.addPlugin("libfoo.so");
    m_sandbox.failPlatformCalls("ecore_init");
    const Outcome outcome = m_sandbox.runToItsEnd();
    EXPECT_EQ(story(outcome.log), "ecore_init\n");
    EXPECT_EQ(outcome.status, 255);
}

TEST_F(DaemonLifecycleTest, AnExceptionThatLeavesTheMainLoopSkipsTheWayDown) {
    m_sandbox.addPlugin("libbleapp.so");
    m_sandbox.addPlugin("libthrows.so", "callback_throws");
    m_sandbox.ignoreLeaks();
    m_sandbox.start();
    m_sandbox.emit({"bt-adapter-state-changed"});
    const Outcome outcome = m_sandbox.wait();
    EXPECT_EQ(outcome.status, 255);
    EXPECT_EQ(outcome.log.ofPriority("E").transcript(),
              "E QVX_TPL_CONTEXT: TPLContext.h : _ProcessJob(#)  "
              "_ProcessJob exception has been occured\n"
              "E QVX_TPL_CONTEXT: TPLContext.h : _InvokeJob(#)  "
              "_InvokeJob exception has been occured\n"
              "E QVX_TPL_CONTEXT: main.cpp: main(#) > exception : from a callback\n");
    // The libraries are closed without a call of PLUGIN_DEINIT. The callback delegator is destroyed
    // when the process exits.
    EXPECT_EQ(story(outcome.log.from("ecore_main_loop_begin")),
              "ecore_main_loop_begin\n"
              "libthrows.so: throws\n"
              "libbleapp.so: closed\n"
              "libthrows.so: closed\n"
              "bt_adapter_unset_state_changed_cb\n");
    const Log after = outcome.log.from("OUT << [int main(int, char**)");
    EXPECT_TRUE(after.contains("IN >> [void CallbackDelegator::deinit()"));
    EXPECT_TRUE(after.contains("bt_adapter_unset_state_changed_cb"));
}

TEST_F(DaemonLifecycleTest, AnExceptionOfAPluginsOwnClassIsReportedBeforeItsLibraryIsClosed) {
    m_sandbox.addPlugin("libthrows.so", "callback_throws_own_class");
    m_sandbox.ignoreLeaks();
    m_sandbox.start();
    m_sandbox.emit({"bt-adapter-state-changed"});
    const Outcome outcome = m_sandbox.wait();
    EXPECT_EQ(outcome.log.ofPriority("E").count("main.cpp: main("), 1U);
    EXPECT_TRUE(outcome.log.from("exception : an exception of the library's own")
                    .contains("libthrows.so: closed"));
    EXPECT_EQ(outcome.status, 255);
}

TEST_F(DaemonLifecycleTest, AnExceptionOnTheWayUpEndsItBeforeAnyPluginIsLoaded) {
    m_sandbox.addPlugin("libfoo.so");
    m_sandbox.throwFromPlatformCalls("bt_audio_initialize");
    m_sandbox.ignoreLeaks();
    const Outcome outcome = m_sandbox.runToItsEnd();
    EXPECT_EQ(story(outcome.log), "ecore_init\nbt_product_init\nbt_audio_initialize\n");
    EXPECT_EQ(outcome.log.ofPriority("E").transcript(),
              "E QVX_TPL_CONTEXT: main.cpp: main(#) > exception : bt_audio_initialize\n");
    EXPECT_EQ(outcome.status, 255);
}

TEST_F(DaemonLifecycleTest, AnExceptionOnTheWayDownSkipsTheRestOfIt) {
    m_sandbox.addPlugin("libfoo.so");
    m_sandbox.throwFromPlatformCalls("bt_product_deinit");
    m_sandbox.ignoreLeaks();
    const Outcome outcome = m_sandbox.startAndTerminate();
    EXPECT_EQ(story(outcome.log.from("libfoo.so: deinit")),
              "libfoo.so: deinit\n"
              "libfoo.so: closed\n"
              "bt_product_deinit\n");
    EXPECT_EQ(outcome.log.ofPriority("E").behind("exception : "),
              std::vector<std::string>{"bt_product_deinit"});
    EXPECT_EQ(outcome.status, 255);
}

TEST_F(DaemonLifecycleTest, ADeinitEntryThatThrowsKeepsTheOthersFromBeingCalled) {
    m_sandbox.addPlugin("libbleapp.so", "deinit_throws");
    m_sandbox.addPlugin("libother.so");
    m_sandbox.ignoreLeaks();
    const Outcome outcome = m_sandbox.startAndTerminate();
    EXPECT_EQ(story(outcome.log.from("ecore_main_loop_begin returned")),
              "ecore_main_loop_begin returned\n"
              "libbleapp.so: deinit\n"
              "libbleapp.so: closed\n"
              "libother.so: closed\n");
    EXPECT_EQ(outcome.log.ofPriority("E").transcript(),
              "E QVX_TPL_CONTEXT: main.cpp: main(#) > exception : from deinit\n");
    EXPECT_EQ(outcome.status, 255);
}

TEST_F(DaemonLifecycleTest, ArgumentsAreIgnored) {
    m_sandbox.addPlugin("libfoo.so");
    const std::string ordinary = m_sandbox.startAndTerminate().log.transcript();
    m_sandbox.setArguments({"--help", "-x", "liba.so"});
    const Outcome outcome = m_sandbox.startAndTerminate();
    EXPECT_EQ(outcome.log.transcript(), ordinary);
    EXPECT_EQ(outcome.status, 0);
}

TEST_F(DaemonLifecycleTest, ASubscriptionLeftBehindEndsWithTheDelegatorBeforeBluetoothDoes) {
    m_sandbox.addPlugin("libleaves.so", "leaves_subscriptions");
    const Outcome outcome = m_sandbox.startAndTerminate();
    EXPECT_EQ(story(outcome.log.from("ecore_main_loop_begin returned")),
              "ecore_main_loop_begin returned\n"
              "libleaves.so: deinit\n"
              "libleaves.so: closed\n"
              "bt_adapter_unset_state_changed_cb\n"
              "bt_product_deinit\n"
              "bt_audio_deinitialize\n"
              "ecore_shutdown\n");
    const Log delegator = outcome.log.from("IN >> [void CallbackDelegator::deinit()");
    EXPECT_EQ(delegator.upTo("OUT << [virtual BtAdapterStateChangedCb::~").transcript(),
              R"(D QVX: log.h: ApiTracker(#) > IN >> [void CallbackDelegator::deinit()(#)]
D QVX: log.h: ~ApiTracker(#) > OUT << [void CallbackDelegator::deinit()(#)]
D QVX: log.h: ApiTracker(#) > IN >> [virtual BtAdapterStateChangedCb::~BtAdapterStateChangedCb()(#)]
D QVX: log.h: ApiTracker(#) > IN >> [virtual void BtAdapterStateChangedCb::unregisterCallback()(#)]
I PLATFORM: bt_adapter_unset_state_changed_cb
D QVX: log.h: ~ApiTracker(#) > OUT << [virtual void BtAdapterStateChangedCb::unregisterCallback()(#)]
D QVX: log.h: ~ApiTracker(#) > OUT << [virtual BtAdapterStateChangedCb::~BtAdapterStateChangedCb()(#)]
)");
    EXPECT_EQ(outcome.status, 0);
}

TEST_F(DaemonLifecycleTest, EverythingRunsOnTheInitialThread) {
    m_sandbox.addPlugin("libfoo.so", "subscriber");
    m_sandbox.start();
    m_sandbox.emit({"bt-adapter-state-changed"});
    const Outcome outcome = m_sandbox.terminate();
    ASSERT_TRUE(outcome.log.contains("libfoo.so: subscription 0"));
    EXPECT_THAT(outcome.log.lines(),
                Each(Field(&LogLine::thread, std::to_string(m_sandbox.daemon().id()))));
}

}  // namespace
