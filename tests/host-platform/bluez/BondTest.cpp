// Tests the events for bonds that are created and destroyed.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

#include "tests/host-platform/bluez/mock/BluezTvFixture.h"

namespace {

using testing::HasSubstr;

class BondTest : public BluezTvFixture {
protected:
    void SetUp() override { startAll(); }

    void bond() {
        updateDevice("{'Paired': <true>}");
        ASSERT_THAT(nextEvent("bt-device-bond-created"), HasSubstr("AA:BB:CC:DD:EE:01"));
    }

    void removeDevice() {
        run({"busctl", "--system", "call", "org.bluez", ADAPTER, "org.bluez.Adapter1",
             "RemoveDevice", "o", DEVICE});
    }
};

TEST_F(BondTest, IsMadeWithAllThatIsKnownOfTheDevice) {
    updateDevice(
        "{'Class': <uint32 5898764>, 'Trusted': <true>, 'Connected': <true>, 'Paired': <true>, "
        "'UUIDs': <['a', 'b']>, "
        "'ManufacturerData': <{uint16 76: <[byte 0x02, 0x15]>, uint16 513: <[byte 0xff]>}>}");
    EXPECT_EQ(nextEvent("bt-device-bond-created"),
              "result=0 info={remote_address=\"AA:BB:CC:DD:EE:01\" remote_name=\"Headset\" "
              "bt_class={major_device_class=2 minor_device_class=3 major_service_class_mask=720} "
              "service_uuid=[a,b] is_bonded=true is_connected=true is_authorized=true "
              "manufacturer_data=[4c0002150102ff]}");
}

TEST_F(BondTest, ManufacturerDataOfAnotherTypeIsLeftOut) {
    updateDevice(
        "{'ManufacturerData': <{uint16 76: <'x'>, uint16 77: <[byte 0x09]>}>, 'Paired': <true>}");
    EXPECT_THAT(nextEvent("bt-device-bond-created"), HasSubstr("manufacturer_data=[4d0009]"));
}

TEST_F(BondTest, OfADeviceWithoutAnyNameHasAnEmptyOne) {
    invalidate("Name");
    updateDevice("{'Alias': <'AA-BB'>}");
    updateDevice("{'Paired': <true>}");
    EXPECT_THAT(nextEvent("bt-device-bond-created"), HasSubstr("remote_name=\"AA-BB\""));
    updateDevice("{'Paired': <false>}");
    invalidate("Alias");
    updateDevice("{'Paired': <true>}");
    EXPECT_THAT(nextEvent("bt-device-bond-created"), HasSubstr("remote_name=\"\""));
}

TEST_F(BondTest, IsMadeOnce) {
    bond();
    updateDevice("{'Paired': <true>, 'UUIDs': <['a']>}");
    settle();
    EXPECT_EQ(countOf("bt-device-bond-created"), 1);
}

TEST_F(BondTest, EndsWhenTheDeviceSaysSo) {
    bond();
    updateDevice("{'Paired': <false>}");
    EXPECT_EQ(nextEvent("bt-device-bond-destroyed"), "result=0 address=\"AA:BB:CC:DD:EE:01\"");
    removeDevice();
    settle();
    settle();
    EXPECT_EQ(countOf("bt-device-bond-destroyed"), 1);
}

TEST_F(BondTest, EndsWhenTheDeviceIsRemoved) {
    bond();
    removeDevice();
    EXPECT_EQ(nextEvent("bt-device-bond-destroyed"), "result=0 address=\"AA:BB:CC:DD:EE:01\"");
}

TEST_F(BondTest, OfADeviceThatNeverHadOneDoesNotEnd) {
    removeDevice();
    settle();
    settle();
    EXPECT_EQ(countOf("bt-device-bond-destroyed"), 0);
}

TEST_F(BondTest, OutlivesTheAdapter) {
    bond();
    mock({"RemoveAdapterWithDevices", "s", "hci0"});
    EXPECT_EQ(nextEvent("bt-adapter-state-changed"), "result=0 state=off");
    mock({"AddAdapter", "ss", "hci0", "desk"});
    EXPECT_EQ(nextEvent("bt-adapter-state-changed"), "result=0 state=on");
    settle();
    EXPECT_EQ(countOf("bt-device-bond-destroyed"), 0);
}

TEST_F(BondTest, OutlivesBluez) {
    bond();
    m_bluez->terminate();
    EXPECT_EQ(nextEvent("bt-adapter-state-changed"), "result=0 state=off");
    startTvBluez();
    mock({"AddAdapter", "ss", "hci0", "desk"});
    EXPECT_EQ(nextEvent("bt-adapter-state-changed"), "result=0 state=on");
    settle();
    EXPECT_EQ(countOf("bt-device-bond-destroyed"), 0);
    EXPECT_EQ(countOf("bt-device-bond-created"), 1);
}

}  // namespace
