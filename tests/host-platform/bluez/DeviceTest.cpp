// Tests the events for device connections, services, batteries, and GATT and HID connections.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

#include "tests/host-platform/bluez/mock/BluezTvFixture.h"

namespace {

using testing::HasSubstr;

constexpr const char* INPUT_UUID = "00001124-0000-1000-8000-00805f9b34fb";
constexpr const char* INPUT_OVER_GATT_UUID = "00001812-0000-1000-8000-00805F9B34FB";

class DeviceTest : public BluezTvFixture {
protected:
    void SetUp() override { startAll(); }

    std::string nextGatt() { return nextEvent("bt-gatt-connection-state-changed"); }
    std::string nextInput() { return nextEvent("bt-host-connection-state-changed"); }
};

TEST_F(DeviceTest, ServicesAreTheUuidsOnceTheyAreResolved) {
    updateDevice("{'Connected': <true>}");
    updateDevice(std::string("{'ServicesResolved': <true>, 'UUIDs': <['") + INPUT_UUID +
                 "', 'x']>}");
    EXPECT_EQ(nextEvent("bt-device-service-searched"),
              std::string("result=0 info={remote_address=\"AA:BB:CC:DD:EE:01\" service_uuid=[") +
                  INPUT_UUID + ",x]}");
    updateDevice("{'ServicesResolved': <true>, 'RSSI': <int16 -50>}");
    updateDevice("{'ServicesResolved': <false>}");
    settle();
    EXPECT_EQ(countOf("bt-device-service-searched"), 1);
    updateDevice("{'ServicesResolved': <true>}");
    EXPECT_THAT(nextEvent("bt-device-service-searched"), HasSubstr("remote_address"));
}

TEST_F(DeviceTest, AnLeConnectionThatIsNotToldIsAskedFor) {
    call("SetSilently", {DEVICE, DEVICE_INTERFACE, "Connected", "<true>"});
    updateDevice("{'ServicesResolved': <true>}");
    EXPECT_EQ(nextEvent("bt-device-connection-state-changed"),
              "connected=true info={remote_address=\"AA:BB:CC:DD:EE:01\" link=bredr "
              "disconn_reason=unknown}");
}

TEST_F(DeviceTest, ServicesWithoutAConnectionMakeNone) {
    updateDevice("{'ServicesResolved': <true>}");
    EXPECT_THAT(nextEvent("bt-device-service-searched"), HasSubstr("service_uuid=[]"));
    settle();
    settle();
    EXPECT_EQ(countOf("bt-device-connection-state-changed"), 0);
}

TEST_F(DeviceTest, GattIsConnectedOverLeOnceServicesAreResolved) {
    updateDevice("{'AddressType': <'random'>, 'Connected': <true>}");
    settle();
    EXPECT_EQ(countOf("bt-gatt-connection-state-changed"), 0);
    updateDevice("{'ServicesResolved': <true>}");
    EXPECT_EQ(nextGatt(), "result=0 connected=true address=\"AA:BB:CC:DD:EE:01\"");
    updateDevice("{'ServicesResolved': <false>}");
    updateDevice("{'Connected': <false>}");
    EXPECT_EQ(nextGatt(), "result=0 connected=false address=\"AA:BB:CC:DD:EE:01\"");
    EXPECT_EQ(countOf("bt-gatt-connection-state-changed"), 2);
}

TEST_F(DeviceTest, GattIsConnectedOverLeOnceThereIsAService) {
    updateDevice("{'AddressType': <'random'>, 'Connected': <true>}");
    addInterface(std::string(DEVICE) + "/service0001", "org.bluez.GattService1",
                 std::string("{'Device': <objectpath '") + DEVICE + "'>}");
    EXPECT_EQ(nextGatt(), "result=0 connected=true address=\"AA:BB:CC:DD:EE:01\"");
    updateDevice("{'ServicesResolved': <true>}");
    settle();
    EXPECT_EQ(countOf("bt-gatt-connection-state-changed"), 1);
}

TEST_F(DeviceTest, GattIsNotConnectedOverTheOtherLink) {
    updateDevice("{'Connected': <true>, 'ServicesResolved': <true>}");
    settle();
    EXPECT_EQ(countOf("bt-gatt-connection-state-changed"), 0);
}

TEST_F(DeviceTest, InputDeviceIsConnectedOnceItsServicesAreResolved) {
    for (const std::string uuid : {INPUT_UUID, INPUT_OVER_GATT_UUID}) {
        updateDevice("{'Connected': <true>, 'UUIDs': <['" + uuid + "']>}");
        updateDevice("{'ServicesResolved': <true>}");
        EXPECT_EQ(nextInput(), "result=0 connected=true address=\"AA:BB:CC:DD:EE:01\"");
        updateDevice("{'Connected': <false>, 'ServicesResolved': <false>}");
        EXPECT_EQ(nextInput(), "result=0 connected=false address=\"AA:BB:CC:DD:EE:01\"");
    }
}

TEST_F(DeviceTest, DeviceWithoutInputIsNoInputDevice) {
    updateDevice("{'Connected': <true>, 'ServicesResolved': <true>, 'UUIDs': <['1124', 'x']>}");
    settle();
    EXPECT_EQ(countOf("bt-host-connection-state-changed"), 0);
}

TEST_F(DeviceTest, ConnectedDeviceThatIsRemovedIsDisconnectedOnce) {
    updateDevice("{'Connected': <true>}");
    updateDevice("{'Connected': <false>}");
    run({"busctl", "--system", "call", "org.bluez", ADAPTER, "org.bluez.Adapter1", "RemoveDevice",
         "o", DEVICE});
    settle();
    EXPECT_EQ(countOf("bt-device-connection-state-changed"), 2);
}

TEST_F(DeviceTest, BatteryIsReportedWhenItAppearsAndWhenItChanges) {
    addInterface(DEVICE, BATTERY_INTERFACE, "{'Percentage': <byte 87>}");
    EXPECT_EQ(nextEvent("bt-hid-battery-status-received"),
              "status={status=87 address=\"AA:BB:CC:DD:EE:01\"}");
    update(DEVICE, BATTERY_INTERFACE, "{'Percentage': <byte 87>}");
    update(DEVICE, BATTERY_INTERFACE, "{'Percentage': <byte 86>}");
    EXPECT_EQ(nextEvent("bt-hid-battery-status-received"),
              "status={status=86 address=\"AA:BB:CC:DD:EE:01\"}");
    EXPECT_EQ(countOf("bt-hid-battery-status-received"), 2);
}

}  // namespace
