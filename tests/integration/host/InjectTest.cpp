// Every event that can be injected, by the tool and by raw D-Bus, up to the plugin.
#include "HostFixture.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

using Words = std::vector<std::string>;

struct Injection {
    const char* event;
    const char* method;
    Words arguments;       // of `corvane emit`
    Words call;            // the same for `busctl call`: types and values
    const char* defaults;  // what the plugin writes of the event without arguments
    const char* expected;  // and with them
};

const Injection injections[] = {
    {"bt-adapter-state-changed",
     "BtAdapterStateChanged",
     {"result=-1", "state=off"},
     {"is", "-1", "0"},
     "result=0 state=on",
     "result=-1 state=off"},
    {"bt-adapter-name-changed",
     "BtAdapterNameChanged",
     {"name=Stube ü"},
     {"s", "Stube ü"},
     "name=\"Living room TV\"",
     "name=\"Stube ü\""},
    {"bt-adapter-ssp-conecnt-request",
     "BtAdapterSspConecntRequest",
     {"name=", "address=a"},
     {"iss", "0", "", "a"},
     "result=0 name=\"Headset\" address=\"AA:BB:CC:DD:EE:FF\"",
     "result=0 name=\"\" address=\"a\""},
    {"bt-adapter-authentication-req",
     "BtAdapterAuthenticationReq",
     {"type=pin-request", "key=", "name=n", "address=a"},
     {"issss", "0", "pin-request", "n", "a", ""},
     "result=0 type=passkey-confirm name=\"Headset\" address=\"AA:BB:CC:DD:EE:FF\" key=\"123456\"",
     "result=0 type=pin-request name=\"n\" address=\"a\" key=\"\""},
    {"bt-adapter-max-device-connected",
     "BtAdapterMaxDeviceConnected",
     {"result=7"},
     {"is", "7", "AA:BB:CC:DD:EE:FF"},
     "result=0 address=\"AA:BB:CC:DD:EE:FF\"",
     "result=7 address=\"AA:BB:CC:DD:EE:FF\""},
    {"bt-adapter-device-discovery-state-changed",
     "BtAdapterDeviceDiscoveryStateChanged",
     {"state=started"},
     {"isa{sv}", "0", "started", "0"},
     nullptr,
     "result=0 state=started info={remote_address=\"\" remote_name=\"\" "
     "bt_class={major_device_class=0 minor_device_class=0 major_service_class_mask=0} rssi=0 "
     "is_bonded=false service_uuid=[] appearance=0 manufacturer_data=[]}"},
    {"bt-device-auth-event",
     "BtDeviceAuthEvent",
     {"service=hid"},
     {"isss", "0", "Headset", "AA:BB:CC:DD:EE:FF", "7"},
     "result=0 name=\"Headset\" address=\"AA:BB:CC:DD:EE:FF\" service=a2dp-source",
     "result=0 name=\"Headset\" address=\"AA:BB:CC:DD:EE:FF\" service=hid"},
    {"bt-device-bond-created",
     "BtDeviceBondCreated",
     {"remote_name=X", "service_uuid=1101", "manufacturer_data=00ff", "is_bonded=false",
      "is_connected=true", "is_authorized=true", "major_device_class=1", "minor_device_class=2",
      "major_service_class_mask=3"},
     {"ia{sv}",
      "0",
      "9",
      "remote_name",
      "s",
      "X",
      "service_uuid",
      "as",
      "1",
      "1101",
      "manufacturer_data",
      "ay",
      "2",
      "0",
      "255",
      "is_bonded",
      "b",
      "false",
      "is_connected",
      "b",
      "true",
      "is_authorized",
      "b",
      "true",
      "major_device_class",
      "i",
      "1",
      "minor_device_class",
      "i",
      "2",
      "major_service_class_mask",
      "i",
      "3"},
     "result=0 info={remote_address=\"AA:BB:CC:DD:EE:FF\" remote_name=\"Headset\" "
     "bt_class={major_device_class=4 minor_device_class=1 major_service_class_mask=288} "
     "service_uuid=[110b,110e] is_bonded=true is_connected=false is_authorized=false "
     "manufacturer_data=[0a0b]}",
     "result=0 info={remote_address=\"AA:BB:CC:DD:EE:FF\" remote_name=\"X\" "
     "bt_class={major_device_class=1 minor_device_class=2 major_service_class_mask=3} "
     "service_uuid=[1101] is_bonded=false is_connected=true is_authorized=true "
     "manufacturer_data=[00ff]}"},
    {"bt-device-bond-created",
     "BtDeviceBondCreated",
     {"result=-3", "present=false"},
     {"ia{sv}", "-3", "1", "present", "b", "false"},
     nullptr,
     "result=-3 info=none"},
    {"bt-device-bond-destroyed",
     "BtDeviceBondDestroyed",
     {"address=a"},
     {"is", "0", "a"},
     "result=0 address=\"AA:BB:CC:DD:EE:FF\"",
     "result=0 address=\"a\""},
    {"bt-device-connection-state-changed",
     "BtDeviceConnectionStateChanged",
     {"connected=false", "link=le", "disconn_reason=timeout"},
     {"ba{sv}", "false", "2", "link", "s", "le", "disconn_reason", "s", "1"},
     "connected=true info={remote_address=\"AA:BB:CC:DD:EE:FF\" link=bredr "
     "disconn_reason=unknown}",
     "connected=false info={remote_address=\"AA:BB:CC:DD:EE:FF\" link=le "
     "disconn_reason=timeout}"},
    {"bt-device-service-searched",
     "BtDeviceServiceSearched",
     {"service_uuid="},
     {"ia{sv}", "0", "1", "service_uuid", "as", "0"},
     "result=0 info={remote_address=\"AA:BB:CC:DD:EE:FF\" service_uuid=[110b,110e]}",
     "result=0 info={remote_address=\"AA:BB:CC:DD:EE:FF\" service_uuid=[]}"},
};

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

TEST_F(InjectTest, EveryEventHasDefaults) {
    for (const auto& injection : injections) {
        if (injection.defaults != nullptr) {
            emit(injection, {});
            EXPECT_EQ(nextEvent(injection.event), injection.defaults);
        }
    }
}

TEST_F(InjectTest, EveryEventIsEmittedByTheTool) {
    for (const auto& injection : injections) {
        emit(injection, injection.arguments);
        EXPECT_EQ(nextEvent(injection.event), injection.expected);
    }
}

TEST_F(InjectTest, EveryEventIsEmittedByRawCalls) {
    for (const auto& injection : injections) {
        Words command{"busctl",
                      "--address=unix:path=" + socket().string(),
                      "call",
                      "x.y",
                      "/org/corvane/Inject",
                      "org.corvane.Inject1",
                      injection.method,
                      "--"};
        command.insert(command.end(), injection.call.begin(), injection.call.end());
        EXPECT_EQ(run(command), "u 1\n");
        EXPECT_EQ(nextEvent(injection.event), injection.expected);
    }
}

// The record copies of the daemon transpose the classes of this one; its other fields count.
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
