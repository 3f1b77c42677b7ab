// Tests the events for audio connections: streaming, volume and remote control.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

#include "tests/host-platform/bluez/mock/BluezTvFixture.h"

namespace {

constexpr const char* SOURCE = "0000110a-0000-1000-8000-00805f9b34fb";
constexpr const char* SINK = "0000110b-0000-1000-8000-00805f9b34fb";
constexpr const char* TARGET = "0000110c-0000-1000-8000-00805f9b34fb";
constexpr const char* CONTROLLER = "0000110e-0000-1000-8000-00805f9b34fb";

const std::string ADDRESS = "address=\"AA:BB:CC:DD:EE:01\"";

class AudioTest : public BluezTvFixture {
protected:
    void SetUp() override { startAll(); }

    void addTransport(const std::string& uuid, const std::string& more = "") {
        addInterface(TRANSPORT, TRANSPORT_INTERFACE,
                     std::string("{'Device': <objectpath '") + DEVICE + "'>, 'UUID': <'" + uuid +
                         "'>, 'State': <'idle'>" + more + "}");
    }

    void updateTransport(const std::string& properties) {
        update(TRANSPORT, TRANSPORT_INTERFACE, properties);
    }

    void controlConnected(bool connected) {
        update(DEVICE, CONTROL_INTERFACE,
               connected ? "{'Connected': <true>}" : "{'Connected': <false>}");
    }

    void offer(const std::string& uuid) { updateDevice("{'UUIDs': <['" + uuid + "']>}"); }

    std::string nextConnection() { return nextEvent("bt-audio-connection-state-changed"); }
    std::string nextState() { return nextEvent("bt-audio-state-changed"); }
};

TEST_F(AudioTest, SourceConnectsAndDisconnects) {
    addTransport(SOURCE);
    EXPECT_EQ(nextConnection(), "result=0 connected=true " + ADDRESS + " profile=a2dp-source");
    removeInterface(TRANSPORT, TRANSPORT_INTERFACE);
    EXPECT_EQ(nextConnection(), "result=0 connected=false " + ADDRESS + " profile=a2dp-source");
}

TEST_F(AudioTest, SinkConnectsAndDisconnectsEvenAfterItsDevice) {
    addTransport(SINK);
    EXPECT_EQ(nextConnection(), "result=0 connected=true " + ADDRESS + " profile=a2dp-sink");
    removeInterface(DEVICE, DEVICE_INTERFACE);
    removeInterface(TRANSPORT, TRANSPORT_INTERFACE);
    EXPECT_EQ(nextConnection(), "result=0 connected=false " + ADDRESS + " profile=a2dp-sink");
}

TEST_F(AudioTest, TransportOfAnotherProfileIsNone) {
    addTransport("0000184e-0000-1000-8000-00805f9b34fb");
    removeInterface(TRANSPORT, TRANSPORT_INTERFACE);
    settle();
    EXPECT_EQ(countOf("bt-audio-connection-state-changed"), 0);
}

TEST_F(AudioTest, SoundStartsAndStops) {
    addTransport(SOURCE);
    updateTransport("{'State': <'active'>}");
    EXPECT_EQ(nextState(), "state=started " + ADDRESS);
    updateTransport("{'State': <'active'>}");
    updateTransport("{'State': <'idle'>}");
    EXPECT_EQ(nextState(), "state=stopped " + ADDRESS);
    updateTransport("{'State': <'active'>}");
    EXPECT_EQ(nextState(), "state=started " + ADDRESS);
    removeInterface(TRANSPORT, TRANSPORT_INTERFACE);
    EXPECT_EQ(nextState(), "state=stopped " + ADDRESS);
}

TEST_F(AudioTest, SoundOfTheRemoteIsNotThisSidesSource) {
    addTransport(SINK);
    updateTransport("{'State': <'pending'>}");
    updateTransport("{'State': <'active'>}");
    settle();
    EXPECT_EQ(countOf("bt-audio-state-changed"), 0);
}

TEST_F(AudioTest, VolumeOfASourceIsTheRemotesOwn) {
    addTransport(SOURCE, ", 'Volume': <uint16 10>");
    updateTransport("{'Volume': <uint16 10>}");
    updateTransport("{'Volume': <uint16 64>}");
    EXPECT_EQ(nextEvent("bt-avrcp-volume-changed-with-address"), ADDRESS + " volume=64");
    settle();
    EXPECT_EQ(countOf("bt-avrcp-volume-changed-with-address"), 1);
    EXPECT_EQ(countOf("bt-avrcp-volume-changed"), 0);
    EXPECT_EQ(countOf("bt-avrcp-interim-volume-notify"), 0);
}

TEST_F(AudioTest, FirstVolumeAfterTheRemoteControlConnectsIsTheInterimOne) {
    addInterface(DEVICE, CONTROL_INTERFACE, "{'Connected': <false>}");
    addTransport(SOURCE);
    controlConnected(true);
    updateTransport("{'Volume': <uint16 30>}");
    EXPECT_EQ(nextEvent("bt-avrcp-interim-volume-notify"), ADDRESS + " volume=30");
    updateTransport("{'Volume': <uint16 31>}");
    EXPECT_EQ(nextEvent("bt-avrcp-volume-changed-with-address"), ADDRESS + " volume=31");
    controlConnected(false);
    controlConnected(true);
    updateTransport("{'Volume': <uint16 32>}");
    EXPECT_EQ(nextEvent("bt-avrcp-interim-volume-notify"), ADDRESS + " volume=32");
    EXPECT_EQ(countOf("bt-avrcp-volume-changed-with-address"), 1);
}

TEST_F(AudioTest, InterimVolumeMayComeWithTheTransport) {
    addInterface(DEVICE, CONTROL_INTERFACE, "{'Connected': <true>}");
    addTransport(SOURCE, ", 'Volume': <uint16 30>");
    EXPECT_EQ(nextEvent("bt-avrcp-interim-volume-notify"), ADDRESS + " volume=30");
}

TEST_F(AudioTest, VolumeOfTheActiveTransportIsTheVolume) {
    addTransport(SOURCE);
    updateTransport("{'State': <'active'>}");
    updateTransport("{'Volume': <uint16 77>}");
    nextLine("EVENT_LOG: bt-avrcp-volume-changed volume=77");
}

TEST_F(AudioTest, VolumeOfASinkIsSetByTheRemote) {
    addTransport(SINK);
    updateTransport("{'Volume': <uint16 127>}");
    EXPECT_EQ(nextEvent("bt-avrcp-absolute-volume-changed"), ADDRESS + " volume=127");
    settle();
    EXPECT_EQ(countOf("bt-avrcp-volume-changed-with-address"), 0);
}

TEST_F(AudioTest, RemoteControlConnectsByTheRolesOfTheRemote) {
    addInterface(DEVICE, CONTROL_INTERFACE, "{'Connected': <false>}");
    offer(TARGET);
    controlConnected(true);
    EXPECT_EQ(nextEvent("bt-avrcp-control-connection-state-changed"), "connected=true " + ADDRESS);
    offer(CONTROLLER);  // its role becomes known after the connection
    EXPECT_EQ(nextEvent("bt-avrcp-target-connection-state-changed"), "connected=true " + ADDRESS);
    controlConnected(false);
    EXPECT_EQ(nextEvent("bt-avrcp-control-connection-state-changed"), "connected=false " + ADDRESS);
    EXPECT_EQ(nextEvent("bt-avrcp-target-connection-state-changed"), "connected=false " + ADDRESS);
    settle();
    EXPECT_EQ(countOf("bt-avrcp-control-connection-state-changed"), 2);
    EXPECT_EQ(countOf("bt-avrcp-target-connection-state-changed"), 2);
}

TEST_F(AudioTest, RemoteControlWithoutARoleIsNone) {
    addInterface(DEVICE, CONTROL_INTERFACE, "{'Connected': <true>}");
    settle();
    EXPECT_EQ(countOf("bt-avrcp-control-connection-state-changed"), 0);
    EXPECT_EQ(countOf("bt-avrcp-target-connection-state-changed"), 0);
}

}  // namespace
