// Tests of loading and unloading a plugin.
#include <corvane/testkit.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <stdexcept>

#include "tests/kit/Fixtures.h"

namespace {

using namespace corvane::testkit;
using testing::AllOf;
using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::ThrowsMessage;

void expectLoadError(const std::string& library, const std::string& part) {
    Host host;
    EXPECT_THAT([&] { host.load(library); },
                ThrowsMessage<LoadError>(AllOf(HasSubstr(library), HasSubstr(part))));
    // After a failure, nothing is subscribed and another plugin can be loaded.
    EXPECT_THAT(host.subscriptions(), IsEmpty());
    host.load(fixture("ordinary"));
    EXPECT_THAT(host.unload(), LeavesNothingBehind());
}

TEST(LoadingTest, CallsBothEntryPoints) {
    Host host;
    host.load(fixture("ordinary"));
    host.unload();
    EXPECT_THAT(host.log(), ElementsAre(HasText("opened"), HasText("init"), HasText("deinit"),
                                        HasText("closed")));
}

TEST(LoadingTest, UnloadsWhatTheTestDoesNot) {
    { Host().load(fixture("ordinary")); }
    Host host;
    host.load(fixture("ordinary"));
    EXPECT_THAT(host.log(), Contains(HasText("opened")));
}

TEST(LoadingTest, TellsTheLoadersOwnText) {
    expectLoadError(fixture("missing"), "cannot open shared object file");
    expectLoadError("/dev/null/x.so", "fail to open plugin");
}

TEST(LoadingTest, TakesForPluginsWhatTheDaemonTakes) {
    expectLoadError(NO_LIBRARY, "only regular files that end in \".so\"");
}

TEST(LoadingTest, TellsThatThereIsNoInitEntry) {
    expectLoadError(fixture("no_init"), "exports no PLUGIN_INIT");
}

TEST(LoadingTest, TellsWhatInitReturns) {
    expectLoadError(fixture("init_returns_minus_1"),
                    "PLUGIN_INIT failed: plugin return negative value : -1");
}

TEST(LoadingTest, TellsWhatInitThrows) {
    expectLoadError(fixture("init_throws_own_class"),
                    "PLUGIN_INIT threw: an exception of the library");
    expectLoadError(fixture("init_throws_int"), "no std::exception; that ends the daemon");
}

TEST(LoadingTest, TellsWhatAFailedInitLeavesBehind) {
    expectLoadError(fixture("subscribes_then_fails"),
                    "leaves subscriptions behind: bt-adapter-state-changed");
}

TEST(LoadingTest, TellsWhatDeinitThrows) {
    Host host;
    host.load(fixture("deinit_throws"));
    EXPECT_THAT([&] { host.unload(); }, ThrowsMessage<UnloadError>(HasSubstr("from deinit")));
    EXPECT_THAT(host.log(), Contains(HasText("closed")));
    host.load(fixture("ordinary"));
}

TEST(LoadingTest, ShowsSubscriptionsLeftBehind) {
    Host host;
    host.load(fixture("leaves_subscriptions"));
    const auto left = host.unload();
    EXPECT_THAT(left, Not(LeavesNothingBehind()));
    EXPECT_THAT(left.subscriptions, ElementsAre("bt-adapter-state-changed"));
    EXPECT_EQ(testing::PrintToString(left), "still subscribed to bt-adapter-state-changed");
    // They are taken away.
    EXPECT_THAT(host.subscriptions(), IsEmpty());
}

TEST(LoadingTest, ShowsProfilesLeftBehind) {
    Host host;
    host.load(fixture("keeps_profiles"));
    EXPECT_THAT(host.unload().subscriptions,
                ElementsAre("bt-host-connection-state-changed",
                            "bt-avrcp-control-connection-state-changed"));
}

TEST(LoadingTest, ShowsThatALibraryStays) {
    Host host;
    host.load(fixture("stays"));
    const auto left = host.unload();
    EXPECT_TRUE(left.libraryStays);
    EXPECT_THAT(testing::PrintToString(left), HasSubstr("stays in the process"));
}

TEST(LoadingTest, HasOneHostAndOnePluginAtATime) {
    Host host;
    EXPECT_THAT([] { Host another; }, ThrowsMessage<std::logic_error>(HasSubstr("another Host")));
    EXPECT_THAT([&] { host.emit("bt-adapter-state-changed"); },
                ThrowsMessage<std::logic_error>(HasSubstr("call load() first")));
    EXPECT_THAT([&] { host.unload(); },
                ThrowsMessage<std::logic_error>(HasSubstr("call load() first")));
    host.load(fixture("ordinary"));
    EXPECT_THAT([&] { host.load(fixture("reads")); },
                ThrowsMessage<std::logic_error>(HasSubstr("call unload() first")));
}

}  // namespace
