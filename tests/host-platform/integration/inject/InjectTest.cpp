// Tests that every event reaches the plugin, injected by the tool and by raw D-Bus calls.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <set>
#include <string>
#include <vector>

#include "tests/host-platform/integration/inject/Injections.h"
#include "tests/support/process/HostFixture.h"

namespace {

std::vector<Injection> allInjections() {
    std::vector<Injection> all;
    for (const auto part :
         {adapterAndDeviceInjections(), profileInjections(), televisionInjections()}) {
        all.insert(all.end(), part.begin(), part.end());
    }
    return all;
}

class InjectTest : public HostFixture {
protected:
    void SetUp() override { startDaemon(); }

    void emit(const Injection& injection, Words arguments) {
        arguments.insert(arguments.begin(), {"emit", injection.event});
        const auto result = tool(arguments);
        EXPECT_EQ(result.status, 0) << result.errors;
        EXPECT_EQ(result.output, std::string(injection.event) + ": delivered to 1 callback\n");
    }
};

TEST_F(InjectTest, EveryEventIsTried) {
    std::set<std::string> events;
    for (const auto& injection : allInjections()) {
        events.insert(injection.event);
    }
    EXPECT_EQ(events.size(), 42u);
}

TEST_F(InjectTest, EveryEventHasDefaults) {
    for (const auto& injection : allInjections()) {
        if (injection.defaults != nullptr) {
            emit(injection, {});
            EXPECT_EQ(nextEvent(injection.event), injection.defaults);
        }
    }
}

TEST_F(InjectTest, EveryEventIsEmittedByTheTool) {
    for (const auto& injection : allInjections()) {
        emit(injection, injection.arguments);
        EXPECT_EQ(nextEvent(injection.event), injection.expected);
    }
}

TEST_F(InjectTest, EveryEventIsEmittedByRawCalls) {
    for (const auto& injection : allInjections()) {
        Words command{"busctl",
                      "--address=unix:path=" + socket().string(),
                      "call",
                      "x.y",
                      "/org/corvane/Inject",
                      "org.corvane.Inject1",
                      injection.method};
        if (!injection.call.empty()) {
            command.push_back("--");
        }
        command.insert(command.end(), injection.call.begin(), injection.call.end());
        EXPECT_EQ(run(command), "u 1\n");
        EXPECT_EQ(nextEvent(injection.event), injection.expected);
    }
}

// The class mask is not compared: the daemon's copy of the record repeats the major class there.
TEST_F(InjectTest, ADeviceIsFound) {
    EXPECT_EQ(
        tool({"emit", "bt-adapter-device-discovery-state-changed", "rssi=-3", "manufacturer_data="})
            .status,
        0);
    const auto line = nextEvent("bt-adapter-device-discovery-state-changed");
    EXPECT_THAT(line, testing::HasSubstr("state=found info={remote_address=\"AA:BB:CC:DD:EE:FF\" "
                                         "remote_name=\"Headset\" bt_class={major_device_class=4"));
    EXPECT_THAT(line, testing::HasSubstr("rssi=-3 is_bonded=false service_uuid=[110b,110e] "
                                         "appearance=0 manufacturer_data=[]}"));
}

TEST_F(InjectTest, EventsReachOneAnotherInOrder) {
    for (int i = 0; i < 20; ++i) {
        tool({"emit", "bt-adapter-name-changed", "name=" + std::to_string(i)});
    }
    for (int i = 0; i < 20; ++i) {
        EXPECT_EQ(nextEvent("bt-adapter-name-changed"), "name=\"" + std::to_string(i) + '"');
    }
}

}  // namespace
