// Tests the arguments of `corvane emit` and the choice of the socket.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <stdexcept>
#include <string>
#include <vector>

#include "platform/host/events/EventArguments.h"
#include "platform/host/events/Values.h"
#include "tools/corvane/events/InjectClient.h"

namespace {

using namespace corvane::host;
using namespace corvane::tool;
using testing::HasSubstr;
using testing::ThrowsMessage;

TEST(EmitArgumentsTest, StartsWithTheDefaults) {
    const auto values = parseArguments(eventNamed("bt-device-bond-created"), {});
    EXPECT_EQ(values.get<std::string>("remote_name"), "Headset");
    EXPECT_TRUE(values.get<bool>("present"));
}

TEST(EmitArgumentsTest, TakesArgumentsAndRecordFieldsByTheirNames) {
    const auto values =
        parseArguments(eventNamed("bt-device-bond-created"),
                       {"result=-3", "remote_name=a=b", "service_uuid=", "present=false"});
    EXPECT_EQ(values.get<int>("result"), -3);
    EXPECT_EQ(values.get<std::string>("remote_name"), "a=b");
    EXPECT_EQ(values.get<Uuids>("service_uuid"), Uuids{});
    EXPECT_FALSE(values.get<bool>("present"));
}

TEST(EmitArgumentsTest, NamesTheArgumentsOfAnEventThatHasNoSuchOne) {
    const auto& event = eventNamed("bt-device-connection-state-changed");
    EXPECT_THAT([&] { parseArguments(event, {"conected=true"}); },
                ThrowsMessage<std::runtime_error>(
                    "bt-device-connection-state-changed has no argument \"conected\"; its "
                    "arguments are connected, remote_address, link, disconn_reason"));
}

TEST(EmitArgumentsTest, RefusesWordsWithoutAnEqualsSign) {
    EXPECT_THAT([] { parseArguments(eventNamed("bt-adapter-state-changed"), {"state"}); },
                ThrowsMessage<std::runtime_error>("\"state\" is not of the form key=value"));
}

TEST(EmitArgumentsTest, SuggestsTheNearestEvents) {
    EXPECT_THAT([] { eventNamed("bt-adapter-ssp-consent-request"); },
                ThrowsMessage<std::runtime_error>(
                    HasSubstr("the nearest names are\n  bt-adapter-ssp-conecnt-request\n")));
}

TEST(SocketPathTest, PrefersWhatIsGivenThenTheEnvironment) {
    setenv("CORVANE_INJECT_SOCKET", "/a/b.sock", 1);
    setenv("XDG_RUNTIME_DIR", "/user", 1);
    EXPECT_EQ(socketPath("/given"), "/given");
    EXPECT_EQ(socketPath(""), "/a/b.sock");
    unsetenv("CORVANE_INJECT_SOCKET");
    EXPECT_EQ(socketPath(""), "/user/corvane/inject.sock");
    unsetenv("XDG_RUNTIME_DIR");
    EXPECT_EQ(socketPath(""), "/run/corvane/inject.sock");
}

}  // namespace
