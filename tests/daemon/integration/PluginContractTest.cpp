// What a plugin can rely on: the daemon's exported symbols, profiles shared with other plugins,
// requested tasks, and that it may unsubscribe at any time.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

#include "tests/support/process/DaemonLog.h"
#include "tests/support/process/Sandbox.h"

using testing::Each;
using testing::Field;

namespace {

class PluginContractTest : public testing::Test {
protected:
    static std::string story(const Log& log) { return log.ofTags({"PLATFORM", "FIXTURE"}).texts(); }

    Sandbox m_sandbox;
};

TEST_F(PluginContractTest, APluginBindsToTheDaemonsFunctionsAndTypes) {
    m_sandbox.addPlugin("libfoo.so", "checks_exports");
    const Outcome outcome = m_sandbox.startAndTerminate();
    EXPECT_EQ(outcome.log.ofTags({"FIXTURE"}).texts(),
              "libfoo.so: opened\n"
              "libfoo.so: init runs on the main thread: yes\n"
              "libfoo.so: the interface's type is the daemon's: yes\n"
              "libfoo.so: the broker's type: 13RequestBroker\n"
              "libfoo.so: the whole object is the handle: yes\n"
              "libfoo.so: deinit runs on the main thread: yes\n"
              "libfoo.so: closed\n");
    EXPECT_EQ(outcome.status, 0);
}

TEST_F(PluginContractTest, ASharedProfileEndsWithTheLastPluginThatUsesIt) {
    m_sandbox.addPlugin("libbleapp.so", "shares_profiles");
    m_sandbox.addPlugin("libother.so", "shares_profiles");
    const Outcome outcome = m_sandbox.startAndTerminate();
    EXPECT_EQ(story(outcome.log.from("libbleapp.so: opened").upTo("bt_product_deinit")),
              "libbleapp.so: opened\n"
              "bt_hid_host_initialize\n"
              "libbleapp.so: HID host: 0\n"
              "bt_avrcp_control_initialize\n"
              "libbleapp.so: AVRCP control: 0\n"
              "libbleapp.so: AVRCP control again: 0\n"
              "libother.so: opened\n"
              "libother.so: HID host: 0\n"
              "libother.so: AVRCP control: 0\n"
              "libother.so: AVRCP control again: 0\n"
              "ecore_main_loop_begin\n"
              "ecore_main_loop_begin returned\n"
              "libbleapp.so: HID host given up: 0\n"
              "libbleapp.so: AVRCP control given up: 0\n"
              "libbleapp.so: closed\n"
              "bt_hid_host_deinitialize\n"
              "libother.so: HID host given up: 0\n"
              "bt_avrcp_control_deinitialize\n"
              "libother.so: AVRCP control given up: 0\n"
              "libother.so: closed\n"
              "bt_product_deinit\n");
}

TEST_F(PluginContractTest, AProfileThatFailsIsNotNoticed) {
    m_sandbox.failPlatformCalls("bt_hid_host_initialize bt_hid_host_deinitialize");
    m_sandbox.addPlugin("libfoo.so", "shares_profiles");
    const Outcome outcome = m_sandbox.startAndTerminate();
    EXPECT_TRUE(outcome.log.contains("libfoo.so: HID host: 0"));
    EXPECT_TRUE(outcome.log.contains("libfoo.so: HID host given up: 0"));
    EXPECT_EQ(outcome.log.count("bt_hid_host_deinitialize"), 1U);
    EXPECT_TRUE(outcome.log.ofPriority("E").lines().empty());
}

TEST_F(PluginContractTest, AProfileLeftInitialisedEndsWithTheDelegator) {
    m_sandbox.addPlugin("libfoo.so", "keeps_profiles");
    const Outcome outcome = m_sandbox.startAndTerminate();
    EXPECT_EQ(outcome.log.count("bt_hid_host_deinitialize"), 1U);
    EXPECT_EQ(outcome.log.count("bt_avrcp_control_deinitialize"), 1U);
    const Log delegator = outcome.log.from("OUT << [void CommonDaemon::unloadPlugins()")
                              .upTo("IN >> [void CommonDaemon::featureDeinitialize()");
    EXPECT_EQ(delegator.count("bt_hid_host_deinitialize"), 1U);
    EXPECT_EQ(delegator.count("bt_avrcp_control_deinitialize"), 1U);
    EXPECT_EQ(outcome.status, 0);
}

TEST_F(PluginContractTest, UnsubscribingFirstThingIsHarmless) {
    m_sandbox.addPlugin("libfoo.so", "unsubscribes_only");
    const Outcome outcome = m_sandbox.startAndTerminate();
    EXPECT_EQ(story(outcome.log.from("libfoo.so: opened").upTo("ecore_main_loop_begin")),
              "libfoo.so: opened\n"
              "libfoo.so: adapter state: 0\n"
              "libfoo.so: speaker: 0\n"
              "libfoo.so: AVRCP target: 0\n"
              "ecore_main_loop_begin\n");
    EXPECT_EQ(outcome.log.ofPriority("I").count("> no callback"), 3U);
    EXPECT_EQ(outcome.status, 0);
}

TEST_F(PluginContractTest, WorkRunsInThePluginsContextOneAfterTheOther) {
    m_sandbox.addPlugin("libfoo.so", "requests_tasks");
    const Outcome outcome = m_sandbox.startAndTerminate();
    EXPECT_EQ(outcome.log.ofTags({"FIXTURE"}).texts(),
              "libfoo.so: opened\n"
              "libfoo.so: work with its user data\n"
              "libfoo.so: request returned 0\n"
              "libfoo.so: outer work begins\n"
              "libfoo.so: inner request returned 0\n"
              "libfoo.so: another thread's request returned 0\n"
              "libfoo.so: outer work ends\n"
              "libfoo.so: work with its user data\n"
              "libfoo.so: work with its user data\n"
              "libfoo.so: outer request returned 0\n"
              "libfoo.so: an empty function: bad_function_call\n"
              "libfoo.so: work with its user data\n"
              "libfoo.so: next request returned 0\n"
              "libfoo.so: closed\n");
    // Everything ran on the main thread, which was running the task context.
    EXPECT_THAT(outcome.log.ofTags({"FIXTURE"}).lines(),
                Each(Field(&LogLine::thread, std::to_string(m_sandbox.daemon().id()))));
    EXPECT_FALSE(outcome.log.contains("CallbackDelegator.h"));
    EXPECT_EQ(outcome.status, 0);
}

}  // namespace
