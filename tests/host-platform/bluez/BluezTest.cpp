// Tests that plugins receive events for the signals of BlueZ.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

#include "tests/support/process/HostFixture.h"

namespace {

using testing::HasSubstr;
using testing::Not;

class BluezTest : public BluezFixture {
protected:
    void SetUp() override { startWithAdapter(); }

    void power(const char* on) const {
        run({"busctl", "--system", "set-property", "org.bluez", ADAPTER, "org.bluez.Adapter1",
             "Powered", "b", on});
    }

    std::string nextConnection() { return nextEvent("bt-device-connection-state-changed"); }
    std::string nextState() { return nextEvent("bt-adapter-state-changed"); }
    std::string nextName() { return nextEvent("bt-adapter-name-changed"); }
};

TEST_F(BluezTest, AdapterIsSwitchedOffAndOn) {
    power("false");
    EXPECT_EQ(nextState(), "result=0 state=off");
    power("true");
    EXPECT_EQ(nextState(), "result=0 state=on");
}

TEST_F(BluezTest, AdapterThatIsRemovedIsOff) {
    mock({"RemoveAdapter", "s", "hci0"});
    EXPECT_EQ(nextState(), "result=0 state=off");
    mock({"AddAdapter", "ss", "hci0", "desk"});
    EXPECT_EQ(nextState(), "result=0 state=on");
}

TEST_F(BluezTest, AdapterStateIsNotRepeated) {
    update(ADAPTER, "org.bluez.Adapter1", "{'Powered': <true>}");
    power("false");
    EXPECT_EQ(nextState(), "result=0 state=off");
    update(ADAPTER, "org.bluez.Adapter1", "{'Powered': <false>}");
    power("true");
    EXPECT_EQ(nextState(), "result=0 state=on");
}

TEST_F(BluezTest, AdapterIsRenamed) {
    update(ADAPTER, "org.bluez.Adapter1", "{'Alias': <'Living room'>}");
    EXPECT_EQ(nextName(), "name=\"Living room\"");
    update(ADAPTER, "org.bluez.Adapter1", "{'Alias': <'Living room'>}");
    update(ADAPTER, "org.bluez.Adapter1", "{'Alias': <'Kitchen'>}");
    EXPECT_EQ(nextName(), "name=\"Kitchen\"");
}

TEST_F(BluezTest, ASecondAdapterChangesNothing) {
    mock({"AddAdapter", "ss", "hci1", "dongle"});
    update("/org/bluez/hci1", "org.bluez.Adapter1", "{'Powered': <false>, 'Alias': <'x'>}");
    update(ADAPTER, "org.bluez.Adapter1", "{'Alias': <'Kitchen'>}");
    EXPECT_EQ(nextName(), "name=\"Kitchen\"");
    EXPECT_THAT(m_daemon->errors(), Not(HasSubstr("state=off")));
}

TEST_F(BluezTest, DeviceConnectsAndDisconnects) {
    addDevice();
    mock({"ConnectDevice", "ss", "hci0", DEVICE_ADDRESS});
    EXPECT_EQ(nextConnection(),
              "connected=true info={remote_address=\"AA:BB:CC:DD:EE:01\" link=bredr "
              "disconn_reason=unknown}");
    mock({"DisconnectDevice", "ss", "hci0", DEVICE_ADDRESS});
    EXPECT_EQ(nextConnection(),
              "connected=false info={remote_address=\"AA:BB:CC:DD:EE:01\" link=bredr "
              "disconn_reason=unknown}");
}

TEST_F(BluezTest, DeviceWithARandomAddressIsConnectedByLe) {
    addDevice();
    update(DEVICE, "org.bluez.Device1", "{'AddressType': <'random'>}");
    mock({"ConnectDevice", "ss", "hci0", DEVICE_ADDRESS});
    EXPECT_THAT(nextConnection(), HasSubstr("link=le"));
}

TEST_F(BluezTest, DeviceThatIsRemovedIsDisconnected) {
    addDevice();
    mock({"ConnectDevice", "ss", "hci0", DEVICE_ADDRESS});
    EXPECT_THAT(nextConnection(), HasSubstr("connected=true"));
    mock({"RemoveAdapterWithDevices", "s", "hci0"});
    EXPECT_THAT(nextConnection(), HasSubstr("connected=false"));
}

TEST_F(BluezTest, PropertiesOfOtherTypesAreSkippedAndTheRestCounts) {
    update(ADAPTER, "org.bluez.Adapter1",
           "{'Alias': <int32 5>, 'Class': <'x'>, 'UUIDs': <['a']>, 'Powered': <false>}");
    EXPECT_EQ(nextState(), "result=0 state=off");
    update(ADAPTER, "org.bluez.Adapter1", "{'Powered': <'yes'>}");
    update(ADAPTER, "org.bluez.Adapter1", "{'Alias': <'Kitchen'>}");
    EXPECT_EQ(nextName(), "name=\"Kitchen\"");
    EXPECT_EQ(m_daemon->errors().find("bt-adapter-name-changed"),
              m_daemon->errors().rfind("bt-adapter-name-changed"));
}

TEST_F(BluezTest, AnInvalidatedPropertyIsNoLongerKnown) {
    run({"gdbus", "call", "--system", "-d", "org.bluez", "-o", ADAPTER, "-m",
         "org.freedesktop.DBus.Mock.EmitSignal", "org.freedesktop.DBus.Properties",
         "PropertiesChanged", "sa{sv}as", "[<'org.bluez.Adapter1'>, <@a{sv} {}>, <['Powered']>]"});
    EXPECT_EQ(nextState(), "result=0 state=off");
}

TEST_F(BluezTest, SignalsOfOtherSendersAreNotBelieved) {
    run({"busctl", "--system", "emit", ADAPTER, "org.freedesktop.DBus.Properties",
         "PropertiesChanged", "sa{sv}as", "org.bluez.Adapter1", "1", "Powered", "b", "false", "0"});
    update(ADAPTER, "org.bluez.Adapter1", "{'Alias': <'Kitchen'>}");
    EXPECT_EQ(nextName(), "name=\"Kitchen\"");
    EXPECT_THAT(m_daemon->errors(), Not(HasSubstr("state=off")));
}

TEST_F(BluezTest, MalformedSignalsAreDropped) {
    run({"gdbus", "call", "--system", "-d", "org.bluez", "-o", ADAPTER, "-m",
         "org.freedesktop.DBus.Mock.EmitSignal", "org.freedesktop.DBus.Properties",
         "PropertiesChanged", "i", "[<5>]"});
    power("false");
    EXPECT_EQ(nextState(), "result=0 state=off");
}

}  // namespace
