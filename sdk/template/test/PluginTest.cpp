// Runs the plugin as the daemon does, and emits the events that the platform would deliver.
#include <corvane/testkit.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

using namespace corvane::testkit;
using testing::Contains;
using testing::ElementsAre;

TEST(MyPluginTest, TellsThatTheAdapterIsOn) {
    Host host;
    host.load(PLUGIN_UNDER_TEST);
    host.emit("bt-adapter-state-changed", {{"state", "on"}});
    EXPECT_THAT(host.log(), Contains(HasText("adapter is on")));
    EXPECT_THAT(host.unload(), LeavesNothingBehind());
}

TEST(MyPluginTest, SubscribesToNothingButTheAdaptersState) {
    Host host;
    host.load(PLUGIN_UNDER_TEST);
    EXPECT_THAT(host.subscriptions(), ElementsAre("bt-adapter-state-changed"));
}

TEST(MyPluginTest, TakesEventsFromSeveralThreadsAtOnce) {
    Host host;
    host.load(PLUGIN_UNDER_TEST);
    host.emitFromThreads(4, "bt-adapter-state-changed", {{"state", "off"}});
    host.waitUntilHandled();
    EXPECT_THAT(host.log(), Contains(HasText("adapter is off")).Times(4));
    EXPECT_THAT(host.unload(), LeavesNothingBehind());
}

}  // namespace
