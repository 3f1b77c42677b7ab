// Tests of the events that a test emits to a plugin.
#include <corvane/testkit.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <string>

#include "tests/kit/Fixtures.h"

namespace {

using namespace corvane::testkit;
using testing::AllOf;
using testing::ContainsRegex;
using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;
using testing::ThrowsMessage;

class EveryEvent : public testing::TestWithParam<std::string> {};

TEST_P(EveryEvent, IsEmittedWithDefaults) {
    Host host;
    host.load(EVENT_LOG_PLUGIN);
    host.clearLog();
    EXPECT_TRUE(host.emit(GetParam()));
    const auto log = host.log();
    ASSERT_THAT(log, SizeIs(1));
    EXPECT_THAT(log[0].text, ContainsRegex("^" + GetParam() + "( |$)"));
    EXPECT_EQ(log[0].tag, "EVENT_LOG");
    EXPECT_THAT(host.unload(), LeavesNothingBehind());
}

INSTANTIATE_TEST_SUITE_P(Kit, EveryEvent, testing::ValuesIn(Host::allEvents()),
                         [](const auto& test) {
                             std::string name = test.param;
                             std::ranges::replace(name, '-', '_');
                             return name;
                         });

TEST(EmissionTest, KnowsAllEvents) {
    EXPECT_THAT(Host::allEvents(), SizeIs(42));
}

TEST(EmissionTest, ShowsWhatIsSubscribed) {
    Host host;
    EXPECT_THAT(host.subscriptions(), IsEmpty());
    host.load(EVENT_LOG_PLUGIN);
    EXPECT_THAT(host.subscriptions(), ElementsAreArray(Host::allEvents()));
    host.unload();
    EXPECT_THAT(host.subscriptions(), IsEmpty());
    host.load(fixture("reads"));
    EXPECT_THAT(host.subscriptions(), ElementsAre("bt-adapter-name-changed"));
}

TEST(EmissionTest, TellsThatThereIsNoSubscriber) {
    Host host;
    host.load(fixture("reads"));
    EXPECT_FALSE(host.emit("bt-adapter-state-changed"));
}

TEST(EmissionTest, PassesArgumentsAndFieldsOfRecords) {
    Host host;
    host.load(EVENT_LOG_PLUGIN);
    host.clearLog();
    host.emit("bt-device-bond-created",
              {{"result", "-7"}, {"remote_name", "Ear = phone"}, {"service_uuid", "1101,1102"}});
    ASSERT_THAT(host.log(), SizeIs(1));
    EXPECT_THAT(host.log()[0].text,
                AllOf(HasSubstr("-7"), HasSubstr("Ear = phone"), HasSubstr("1102")));
}

TEST(EmissionTest, NamesTheNearestEventsForOneThatDoesNotExist) {
    Host host;
    host.load(EVENT_LOG_PLUGIN);
    EXPECT_THAT([&] { host.emit("adapter-state-changed"); },
                ThrowsMessage<InvalidEvent>(AllOf(HasSubstr("no event \"adapter-state-changed\""),
                                                  HasSubstr("bt-adapter-state-changed"))));
}

TEST(EmissionTest, NamesTheArgumentsForOneThatDoesNotExist) {
    Host host;
    host.load(EVENT_LOG_PLUGIN);
    EXPECT_THAT(
        [&] {
            host.emit("bt-adapter-state-changed", {{"sate", "on"}});
        },
        ThrowsMessage<InvalidEvent>(
            AllOf(HasSubstr("no argument \"sate\""), HasSubstr("result, state"))));
    EXPECT_THAT(
        [&] {
            host.emitFromThreads(2, "bt-adapter-state-changed", {{"sate", "on"}});
        },
        ThrowsMessage<InvalidEvent>(HasSubstr("no argument \"sate\"")));
}

TEST(EmissionTest, NamesTheValuesForOneThatIsNotAllowed) {
    Host host;
    host.load(EVENT_LOG_PLUGIN);
    host.clearLog();
    EXPECT_THAT(
        [&] {
            host.emit("bt-adapter-state-changed", {{"state", "up"}});
        },
        ThrowsMessage<InvalidEvent>(
            AllOf(HasSubstr("state can't be \"up\""), HasSubstr("off (0) or on (1)"))));
    EXPECT_THAT(
        [&] {
            host.emit("bt-device-bond-created", {{"service_count", "9"}});
        },
        ThrowsMessage<InvalidEvent>(HasSubstr("service_count can't be 9")));
    EXPECT_THAT(host.log(), IsEmpty());
}

}  // namespace
