// Tests of the platform that the kit gives a plugin: system information, log and main loop.
#include <corvane/testkit.h>
#include <dlog.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

#include "tests/kit/Fixtures.h"

namespace {

using namespace corvane::testkit;
using testing::AllOf;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;
using std::chrono_literals::operator""ms;

TEST(PlatformTest, HasTheSystemInformationTheTestGives) {
    {
        Host host;
        host.setSystemInformation("product/type", 7);
        host.load(fixture("asks"));
        EXPECT_THAT(host.log(), Contains(AllOf(HasText("product type: 7, known"), HasTag("ASKS"),
                                               HasPriority(DLOG_PRIORITY_WARNING))));
    }
    Host host;
    host.load(fixture("asks"));
    EXPECT_THAT(host.log(), Contains(HasText("product type: 0, not known")));
}

TEST(PlatformTest, KeepsLongLinesWhole) {
    Host host;
    host.load(EVENT_LOG_PLUGIN);
    host.clearLog();
    const std::string name(5000, 'x');
    host.emit("bt-adapter-name-changed", {{"name", name}});
    EXPECT_THAT(host.log(), ElementsAre(HasText(name)));
}

TEST(PlatformTest, ForgetsTheLogWhenTold) {
    Host host;
    host.load(fixture("ordinary"));
    host.clearLog();
    EXPECT_THAT(host.log(), IsEmpty());
}

TEST(PlatformTest, ShowsWhatAPluginsOwnWorkLogs) {
    Host host;
    host.load(fixture("requests_tasks"));
    host.waitUntilHandled();
    EXPECT_THAT(host.log(), Contains(HasText("work with its user data")).Times(4));
}

TEST(PlatformTest, RunsTheMainLoop) {
    Host host;
    host.load(fixture("ticks"));
    EXPECT_TRUE(host.runMainLoopUntil([&] { return host.log().size() >= 3; }));
    EXPECT_THAT(host.log(), Contains(HasText("tick")));
    host.unload();
    host.clearLog();
    EXPECT_FALSE(host.runMainLoopUntil([&] { return !host.log().empty(); }, 20ms));
}

TEST(PlatformTest, WaitsForALogLineNoLongerThanItsLimit) {
    Host host;
    EXPECT_EQ(host.waitForLog("nothing", 10ms), std::nullopt);
}

}  // namespace
