// Tests discovery and the devices that it finds.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

#include "tests/host-platform/bluez/mock/BluezTvFixture.h"

namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::StartsWith;

constexpr const char* EVENT = "bt-adapter-device-discovery-state-changed";

// The arguments of a discovery event without a device.
const std::string NOTHING =
    "info={remote_address=\"\" remote_name=\"\" bt_class={major_device_class=0 "
    "minor_device_class=0 major_service_class_mask=0} rssi=0 is_bonded=false service_uuid=[] "
    "appearance=0 manufacturer_data=[]}";

class DiscoveryTest : public BluezTvFixture {
protected:
    void SetUp() override { startAll(); }

    void discover(bool on) {
        update(ADAPTER, "org.bluez.Adapter1",
               on ? "{'Discovering': <true>}" : "{'Discovering': <false>}");
    }

    void start() {
        discover(true);
        ASSERT_EQ(nextEvent(EVENT), "result=0 state=started " + NOTHING);
    }
};

TEST_F(DiscoveryTest, StartsAndEnds) {
    start();
    discover(false);
    EXPECT_EQ(nextEvent(EVENT), "result=0 state=finished " + NOTHING);
}

TEST_F(DiscoveryTest, ThatDidNotRunDoesNotEndWhenTheAdapterGoesOff) {
    update(ADAPTER, "org.bluez.Adapter1", "{'Powered': <false>, 'Discovering': <false>}");
    EXPECT_EQ(nextEvent("bt-adapter-state-changed"), "result=0 state=off");
    settle();
    EXPECT_EQ(countOf(EVENT), 0);
}

TEST_F(DiscoveryTest, EndsWithTheAdapter) {
    start();
    mock({"RemoveAdapter", "s", "hci0"});
    EXPECT_EQ(nextEvent(EVENT), "result=0 state=finished " + NOTHING);
}

TEST_F(DiscoveryTest, FindsANewDevice) {
    start();
    addInterface(std::string(ADAPTER) + "/dev_AA_BB_CC_DD_EE_02", "org.bluez.Device1",
                 "{'Address': <'AA:BB:CC:DD:EE:02'>, 'Adapter': <objectpath '/org/bluez/hci0'>, "
                 "'Name': <'Lamp'>, 'RSSI': <int16 -79>}");
    EXPECT_EQ(nextEvent(EVENT),
              "result=0 state=found info={remote_address=\"AA:BB:CC:DD:EE:02\" "
              "remote_name=\"Lamp\" bt_class={major_device_class=0 minor_device_class=0 "
              "major_service_class_mask=0} rssi=-79 is_bonded=false service_uuid=[] appearance=0 "
              "manufacturer_data=[]}");
}

TEST_F(DiscoveryTest, FindsAKnownDeviceByEachNewStrengthOfItsSignal) {
    start();
    updateDevice("{'RSSI': <int16 -40>, 'UUIDs': <['a']>}");
    EXPECT_THAT(nextEvent(EVENT),
                AllOf(StartsWith("result=0 state=found"), HasSubstr("rssi=-40"), HasSubstr("[a]")));
    updateDevice("{'RSSI': <int16 -40>}");
    updateDevice("{'RSSI': <int16 -50>}");
    EXPECT_THAT(nextEvent(EVENT), HasSubstr("rssi=-50"));
    invalidate("RSSI");
    updateDevice("{'RSSI': <int16 -50>}");
    EXPECT_THAT(nextEvent(EVENT), HasSubstr("rssi=-50"));
    settle();
    EXPECT_EQ(countOf(EVENT), 4);
}

TEST_F(DiscoveryTest, OtherNewsOfAKnownDeviceFindNothing) {
    start();
    updateDevice("{'Trusted': <true>}");
    settle();
    EXPECT_EQ(countOf(EVENT), 1);
}

TEST_F(DiscoveryTest, NothingIsFoundWithoutIt) {
    updateDevice("{'RSSI': <int16 -40>}");
    mock({"AddDevice", "sss", "hci0", "AA:BB:CC:DD:EE:02", "Lamp"});
    settle();
    EXPECT_EQ(countOf(EVENT), 0);
}

TEST_F(DiscoveryTest, TheDevicesOfASecondAdapterAreNotFound) {
    mock({"AddAdapter", "ss", "hci1", "dongle"});
    start();
    mock({"AddDevice", "sss", "hci1", "AA:BB:CC:DD:EE:02", "Lamp"});
    settle();
    EXPECT_EQ(countOf(EVENT), 1);
}

}  // namespace
