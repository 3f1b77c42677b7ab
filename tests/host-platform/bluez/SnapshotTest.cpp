// Tests that the state in which the daemon finds BlueZ causes no events, except that of the
// adapter, and that the end of such a state causes one.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

#include "tests/host-platform/bluez/mock/BluezTvFixture.h"

namespace {

using testing::HasSubstr;

constexpr const char* UUIDS =
    "'UUIDs': <['00001124-0000-1000-8000-00805f9b34fb', '0000110c-0000-1000-8000-00805f9b34fb', "
    "'0000110e-0000-1000-8000-00805f9b34fb']>";

class SnapshotTest : public BluezTvFixture {
protected:
    // Gives the device every kind of connection, and starts discovery.
    void fill() {
        updateDevice(std::string("{'AddressType': <'random'>, 'Paired': <true>, 'Connected': "
                                 "<true>, 'ServicesResolved': <true>, ") +
                     UUIDS + "}");
        addInterface(DEVICE, BATTERY_INTERFACE, "{'Percentage': <byte 87>}");
        addInterface(DEVICE, CONTROL_INTERFACE, "{'Connected': <true>}");
        addInterface(TRANSPORT, TRANSPORT_INTERFACE,
                     std::string("{'Device': <objectpath '") + DEVICE +
                         "'>, 'UUID': <'0000110a-0000-1000-8000-00805f9b34fb'>, 'State': "
                         "<'active'>, 'Volume': <uint16 5>}");
        update(ADAPTER, "org.bluez.Adapter1", "{'Discovering': <true>}");
    }

    // Restarts BlueZ, with the adapter but without the device.
    void restartBluez() {
        m_bluez->terminate();
        EXPECT_EQ(nextEvent("bt-adapter-state-changed"), "result=0 state=off");
        startTvBluez();
        mock({"AddAdapter", "ss", "hci0", "desk"});
        EXPECT_EQ(nextEvent("bt-adapter-state-changed"), "result=0 state=on");
    }

    // Returns the lines of the event log, without the events of the adapter.
    std::string events() const {
        std::string found;
        const auto log = m_daemon->errors();
        for (auto at = log.find("EVENT_LOG: "); at != std::string::npos;
             at = log.find("EVENT_LOG: ", at + 1)) {
            const auto line = log.substr(at + 11, log.find('\n', at) - at - 11);
            if (!line.starts_with("bt-adapter-")) {
                found += line + '\n';
            }
        }
        return found;
    }

    void expectAllEnds() {
        EXPECT_EQ(nextEvent("bt-adapter-state-changed"), "result=0 state=off");
        EXPECT_THAT(nextEvent("bt-adapter-device-discovery-state-changed"),
                    HasSubstr("state=finished"));
        for (const auto* const name :
             {"bt-device-connection-state-changed", "bt-gatt-connection-state-changed",
              "bt-host-connection-state-changed", "bt-avrcp-control-connection-state-changed",
              "bt-avrcp-target-connection-state-changed", "bt-audio-connection-state-changed"}) {
            EXPECT_EQ(countOf(name), 1) << name << " in\n" << events();
        }
        EXPECT_THAT(events(), testing::Not(HasSubstr("=true")));
        EXPECT_THAT(events(), HasSubstr("bt-audio-state-changed state=stopped"));
        EXPECT_EQ(countOf("bt-device-bond-destroyed"), 0);
        EXPECT_EQ(countOf("bt-adapter-device-discovery-state-changed"), 1);
    }
};

TEST_F(SnapshotTest, IsSilent) {
    startTv();
    fill();
    startDaemonThere();
    settle();
    EXPECT_EQ(events(), "");
    updateDevice("{'Connected': <true>, 'Paired': <true>, 'ServicesResolved': <true>}");
    update(DEVICE, CONTROL_INTERFACE, "{'Connected': <true>}");
    update(DEVICE, BATTERY_INTERFACE, "{'Percentage': <byte 87>}");
    update(TRANSPORT, TRANSPORT_INTERFACE, "{'State': <'active'>, 'Volume': <uint16 5>}");
    settle();
    EXPECT_EQ(events(), "");
    EXPECT_EQ(countOf("bt-adapter-device-discovery-state-changed"), 0);
}

TEST_F(SnapshotTest, EverythingInItEndsWithBluezExceptTheBond) {
    startTv();
    fill();
    startDaemonThere();
    m_bluez->terminate();
    expectAllEnds();
}

TEST_F(SnapshotTest, EverythingInItEndsWithTheBusExceptTheBond) {
    startTv();
    fill();
    startDaemonThere();
    m_bus->terminate();
    expectAllEnds();
}

TEST_F(SnapshotTest, AStrangerThatComesConnectedLaterIsConnected) {
    startAll();
    addInterface("/org/bluez/hci0/dev_AA_BB_CC_DD_EE_03", DEVICE_INTERFACE,
                 std::string("{'Address': <'AA:BB:CC:DD:EE:03'>, 'Adapter': <objectpath '") +
                     ADAPTER + "'>, 'Class': <uint32 5>, 'Paired': <false>, 'Connected': <true>}");
    EXPECT_EQ(nextEvent("bt-device-connection-state-changed"),
              "connected=true info={remote_address=\"AA:BB:CC:DD:EE:03\" link=bredr "
              "disconn_reason=unknown}");
}

TEST_F(SnapshotTest, DevicesThatComeWithARestartedBluezAreSilent) {
    startAll();
    restartBluez();
    addInterface("/org/bluez/hci0/dev_AA_BB_CC_DD_EE_02", DEVICE_INTERFACE,
                 std::string("{'Address': <'AA:BB:CC:DD:EE:02'>, 'Adapter': <objectpath '") +
                     ADAPTER +
                     "'>, 'Paired': <true>, 'Connected': <true>, 'ServicesResolved': <true>, " +
                     UUIDS + "}");
    settle();
    EXPECT_EQ(events(), "");
}

TEST_F(SnapshotTest, EverythingWorksAgainAfterARestart) {
    startAll();
    restartBluez();
    addDevice();
    updateDevice("{'Connected': <true>}");
    EXPECT_THAT(nextEvent("bt-device-connection-state-changed"), HasSubstr("connected=true"));
}

}  // namespace
