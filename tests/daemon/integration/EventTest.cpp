// Delivery of events from the platform to the plugins that have subscribed.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstddef>
#include <string>

#include "tests/support/process/DaemonLog.h"
#include "tests/support/process/Sandbox.h"

namespace {

// The daemon's priorities for these names give this load order.
constexpr const char* FIRST_PLUGIN = "libbleapp.so";
constexpr const char* SECOND_PLUGIN = "libbtapp-lite.so";

constexpr const char* DELIVERED = "bt-adapter-state-changed: delivered to 1 callback\n";
constexpr const char* NOT_DELIVERED = "bt-adapter-state-changed: no plugin has subscribed\n";

class DaemonEventTest : public testing::Test {
protected:
    /// Sends an adapter state change. Returns the output of the sending command.
    std::string changeState(const std::string& state = "off") {
        return m_sandbox.emit({"bt-adapter-state-changed", "state=" + state});
    }
    /// Returns the log from the start of the main loop to its end.
    static Log whileRunning(const Log& log) {
        return log.from("ecore_main_loop_begin").upTo("ecore_main_loop_begin returned");
    }
    static std::string story(const Log& log) { return log.ofTags({"PLATFORM", "FIXTURE"}).texts(); }

    /// Starts the daemon, sends the adapter states off and on, and terminates it. Expects that the
    /// first event is delivered and that the command prints `second` for the other one.
    Outcome switchOffAndOn(const char* second) {
        m_sandbox.start();
        EXPECT_EQ(changeState("off"), DELIVERED);
        EXPECT_EQ(changeState("on"), second);
        return m_sandbox.terminate();
    }

    Sandbox m_sandbox;
};

TEST_F(DaemonEventTest, TwoPluginsReceiveEachEventOnceWithTheirOwnUserData) {
    m_sandbox.addPlugin(FIRST_PLUGIN, "subscriber");
    m_sandbox.addPlugin(SECOND_PLUGIN, "subscriber");
    const Outcome outcome = switchOffAndOn(DELIVERED);
    EXPECT_EQ(story(outcome.log),
              "ecore_init\n"
              "bt_product_init\n"
              "bt_audio_initialize\n"
              "access marker\n"
              "libbleapp.so: opened\n"
              "bt_adapter_set_state_changed_cb\n"
              "libbleapp.so: subscribe returned 0\n"
              "libbtapp-lite.so: opened\n"
              "libbtapp-lite.so: subscribe returned 0\n"
              "ecore_main_loop_begin\n"
              "libbleapp.so: subscription 0: result 0, state 0\n"
              "libbtapp-lite.so: subscription 0: result 0, state 0\n"
              "libbleapp.so: subscription 0: result 0, state 1\n"
              "libbtapp-lite.so: subscription 0: result 0, state 1\n"
              "ecore_main_loop_begin returned\n"
              "libbleapp.so: unsubscribe returned 0\n"
              "libbleapp.so: closed\n"
              "bt_adapter_unset_state_changed_cb\n"
              "libbtapp-lite.so: unsubscribe returned 0\n"
              "libbtapp-lite.so: closed\n"
              "bt_product_deinit\n"
              "bt_audio_deinitialize\n"
              "ecore_shutdown\n");
    EXPECT_EQ(outcome.status, 0);
}

TEST_F(DaemonEventTest, EachPluginSubscribesThroughAnInvokerOfItsOwn) {
    m_sandbox.addPlugin(FIRST_PLUGIN, "subscriber");
    m_sandbox.addPlugin(SECOND_PLUGIN, "subscriber");
    m_sandbox.start();
    changeState();
    const Log log = m_sandbox.terminate().log;
    const auto subscribers = log.behind("> task invoker : ");
    ASSERT_EQ(subscribers.size(), 2U);
    const auto invoker = [&](std::size_t i) {
        return subscribers[i].substr(0, subscribers[i].find(','));
    };
    EXPECT_NE(invoker(0), invoker(1));
    EXPECT_THAT(log.behind("> invoker : "), testing::ElementsAre(invoker(0), invoker(1)));
    EXPECT_THAT(log.behind("> remove invoker : "), testing::ElementsAre(invoker(0), invoker(1)));
}

TEST_F(DaemonEventTest, APluginThatSubscribedTwiceIsCalledTwiceAndUnsubscribesOnce) {
    m_sandbox.addPlugin(FIRST_PLUGIN, "subscribes_twice");
    m_sandbox.start();
    EXPECT_EQ(changeState(), DELIVERED);
    const Log log = m_sandbox.terminate().log;
    EXPECT_EQ(story(log.from("bt_audio_initialize").upTo("bt_product_deinit")),
              "bt_audio_initialize\n"
              "libbleapp.so: opened\n"
              "bt_adapter_set_state_changed_cb\n"
              "libbleapp.so: subscribe returned 0\n"
              "libbleapp.so: subscribe returned 0\n"
              "ecore_main_loop_begin\n"
              "libbleapp.so: subscription 0: result 0, state 0\n"
              "libbleapp.so: subscription 1: result 0, state 0\n"
              "ecore_main_loop_begin returned\n"
              "bt_adapter_unset_state_changed_cb\n"
              "libbleapp.so: unsubscribe returned 0\n"
              "libbleapp.so: closed\n"
              "bt_product_deinit\n");
}

TEST_F(DaemonEventTest, NoSubscriberRemainsAfterUnsubscribingInTheCallback) {
    m_sandbox.addPlugin(FIRST_PLUGIN, "unsubscribes_in_callback");
    const Outcome outcome = switchOffAndOn(NOT_DELIVERED);
    EXPECT_EQ(story(whileRunning(outcome.log)),
              "ecore_main_loop_begin\n"
              "libbleapp.so: subscription 0: result 0, state 0\n"
              "bt_adapter_unset_state_changed_cb\n"
              "libbleapp.so: unsubscribe returned 0\n"
              "ecore_main_loop_begin returned\n");
    EXPECT_EQ(outcome.status, 0);
}

// The event is delivered to both subscriptions, although the first one's callback deletes the event
// source.
TEST_F(DaemonEventTest, UnsubscribingInTheCallbackTakesEffectFromTheNextEventOn) {
    m_sandbox.addPlugin(FIRST_PLUGIN, "subscribed_twice_unsubscribes_in_callback");
    const Outcome outcome = switchOffAndOn(NOT_DELIVERED);
    EXPECT_EQ(story(whileRunning(outcome.log)),
              "ecore_main_loop_begin\n"
              "libbleapp.so: subscription 0: result 0, state 0\n"
              "bt_adapter_unset_state_changed_cb\n"
              "libbleapp.so: unsubscribe returned 0\n"
              "libbleapp.so: subscription 1: result 0, state 0\n"
              "libbleapp.so: unsubscribe returned 0\n"
              "ecore_main_loop_begin returned\n");
    EXPECT_EQ(outcome.log.count("> no callback"), 3U);  // creation and two unneeded unsubscribes
    EXPECT_EQ(outcome.status, 0);
}

TEST_F(DaemonEventTest, TheCallbackStaysSetWhileAnotherPluginIsSubscribed) {
    m_sandbox.addPlugin(FIRST_PLUGIN, "unsubscribes_in_callback");
    m_sandbox.addPlugin(SECOND_PLUGIN, "subscriber");
    const Outcome outcome = switchOffAndOn(DELIVERED);
    EXPECT_EQ(story(whileRunning(outcome.log)),
              "ecore_main_loop_begin\n"
              "libbleapp.so: subscription 0: result 0, state 0\n"
              "libbleapp.so: unsubscribe returned 0\n"
              "libbtapp-lite.so: subscription 0: result 0, state 0\n"
              "libbtapp-lite.so: subscription 0: result 0, state 1\n"
              "ecore_main_loop_begin returned\n");
    EXPECT_EQ(outcome.status, 0);
}

// The plugin's library is closed, so its callback must not be called.
TEST_F(DaemonEventTest, AnEventForAPluginThatFailedToLoadIsDropped) {
    m_sandbox.addPlugin(FIRST_PLUGIN, "subscribes_then_fails");
    m_sandbox.addPlugin(SECOND_PLUGIN, "subscriber");
    m_sandbox.start();
    EXPECT_EQ(changeState(), DELIVERED);
    const Outcome outcome = m_sandbox.terminate();
    EXPECT_EQ(story(whileRunning(outcome.log)),
              "ecore_main_loop_begin\n"
              "libbtapp-lite.so: subscription 0: result 0, state 0\n"
              "ecore_main_loop_begin returned\n");
    EXPECT_EQ(whileRunning(outcome.log).count("> invoker : "), 2U);
    EXPECT_EQ(outcome.status, 0);
}

TEST_F(DaemonEventTest, TheSubscriptionOfAPluginThatFailedEndsWithTheDelegator) {
    m_sandbox.addPlugin(FIRST_PLUGIN, "subscribes_then_fails");
    const Outcome outcome = m_sandbox.startAndTerminate();
    EXPECT_EQ(story(outcome.log.from("ecore_main_loop_begin returned")),
              "ecore_main_loop_begin returned\n"
              "bt_adapter_unset_state_changed_cb\n"
              "bt_product_deinit\n"
              "bt_audio_deinitialize\n"
              "ecore_shutdown\n");
    EXPECT_EQ(outcome.status, 0);
}

}  // namespace
