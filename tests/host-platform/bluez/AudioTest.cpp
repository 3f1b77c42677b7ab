// Audio connections: streaming, volume and remote control.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

#include "tests/host-platform/bluez/mock/BluezTvFixture.h"

namespace {

constexpr const char* source = "0000110a-0000-1000-8000-00805f9b34fb";
constexpr const char* sink = "0000110b-0000-1000-8000-00805f9b34fb";
constexpr const char* target = "0000110c-0000-1000-8000-00805f9b34fb";
constexpr const char* controller = "0000110e-0000-1000-8000-00805f9b34fb";

const std::string address = "address=\"AA:BB:CC:DD:EE:01\"";

class AudioTest : public BluezTvFixture {
protected:
    void SetUp() override { startAll(); }

    void addTransport(const std::string& uuid, const std::string& more = "") {
        addInterface(transport, transportInterface,
                     std::string("{'Device': <objectpath '") + device + "'>, 'UUID': <'" + uuid +
                         "'>, 'State': <'idle'>" + more + "}");
    }

    void updateTransport(const std::string& properties) {
        update(transport, transportInterface, properties);
    }

    void controlConnected(bool connected) {
        update(device, controlInterface,
               connected ? "{'Connected': <true>}" : "{'Connected': <false>}");
    }

    void offer(const std::string& uuid) { updateDevice("{'UUIDs': <['" + uuid + "']>}"); }

    std::string nextConnection() { return nextEvent("bt-audio-connection-state-changed"); }
    std::string nextState() { return nextEvent("bt-audio-state-changed"); }
};

TEST_F(AudioTest, SourceConnectsAndDisconnects) {
    addTransport(source);
    EXPECT_EQ(nextConnection(), "result=0 connected=true " + address + " profile=a2dp-source");
    removeInterface(transport, transportInterface);
    EXPECT_EQ(nextConnection(), "result=0 connected=false " + address + " profile=a2dp-source");
}

TEST_F(AudioTest, SinkConnectsAndDisconnectsEvenAfterItsDevice) {
    addTransport(sink);
    EXPECT_EQ(nextConnection(), "result=0 connected=true " + address + " profile=a2dp-sink");
    removeInterface(device, deviceInterface);
    removeInterface(transport, transportInterface);
    EXPECT_EQ(nextConnection(), "result=0 connected=false " + address + " profile=a2dp-sink");
}

TEST_F(AudioTest, TransportOfAnotherProfileIsNone) {
    addTransport("0000184e-0000-1000-8000-00805f9b34fb");
    removeInterface(transport, transportInterface);
    settle();
    EXPECT_EQ(countOf("bt-audio-connection-state-changed"), 0);
}

TEST_F(AudioTest, SoundStartsAndStops) {
    addTransport(source);
    updateTransport("{'State': <'active'>}");
    EXPECT_EQ(nextState(), "state=started " + address);
    updateTransport("{'State': <'active'>}");
    updateTransport("{'State': <'idle'>}");
    EXPECT_EQ(nextState(), "state=stopped " + address);
    updateTransport("{'State': <'active'>}");
    EXPECT_EQ(nextState(), "state=started " + address);
    removeInterface(transport, transportInterface);
    EXPECT_EQ(nextState(), "state=stopped " + address);
}

TEST_F(AudioTest, SoundOfTheRemoteIsNotThisSidesSource) {
    addTransport(sink);
    updateTransport("{'State': <'pending'>}");
    updateTransport("{'State': <'active'>}");
    settle();
    EXPECT_EQ(countOf("bt-audio-state-changed"), 0);
}

TEST_F(AudioTest, VolumeOfASourceIsTheRemotesOwn) {
    addTransport(source, ", 'Volume': <uint16 10>");
    updateTransport("{'Volume': <uint16 10>}");
    updateTransport("{'Volume': <uint16 64>}");
    EXPECT_EQ(nextEvent("bt-avrcp-volume-changed-with-address"), address + " volume=64");
    settle();
    EXPECT_EQ(countOf("bt-avrcp-volume-changed-with-address"), 1);
    EXPECT_EQ(countOf("bt-avrcp-volume-changed"), 0);
    EXPECT_EQ(countOf("bt-avrcp-interim-volume-notify"), 0);
}

TEST_F(AudioTest, FirstVolumeAfterTheRemoteControlConnectsIsTheInterimOne) {
    addInterface(device, controlInterface, "{'Connected': <false>}");
    addTransport(source);
    controlConnected(true);
    updateTransport("{'Volume': <uint16 30>}");
    EXPECT_EQ(nextEvent("bt-avrcp-interim-volume-notify"), address + " volume=30");
    updateTransport("{'Volume': <uint16 31>}");
    EXPECT_EQ(nextEvent("bt-avrcp-volume-changed-with-address"), address + " volume=31");
    controlConnected(false);
    controlConnected(true);
    updateTransport("{'Volume': <uint16 32>}");
    EXPECT_EQ(nextEvent("bt-avrcp-interim-volume-notify"), address + " volume=32");
    EXPECT_EQ(countOf("bt-avrcp-volume-changed-with-address"), 1);
}

TEST_F(AudioTest, InterimVolumeMayComeWithTheTransport) {
    addInterface(device, controlInterface, "{'Connected': <true>}");
    addTransport(source, ", 'Volume': <uint16 30>");
    EXPECT_EQ(nextEvent("bt-avrcp-interim-volume-notify"), address + " volume=30");
}

TEST_F(AudioTest, VolumeOfTheActiveTransportIsTheVolume) {
    addTransport(source);
    updateTransport("{'State': <'active'>}");
    updateTransport("{'Volume': <uint16 77>}");
    nextLine("EVENT_LOG: bt-avrcp-volume-changed volume=77");
}

TEST_F(AudioTest, VolumeOfASinkIsSetByTheRemote) {
    addTransport(sink);
    updateTransport("{'Volume': <uint16 127>}");
    EXPECT_EQ(nextEvent("bt-avrcp-absolute-volume-changed"), address + " volume=127");
    settle();
    EXPECT_EQ(countOf("bt-avrcp-volume-changed-with-address"), 0);
}

TEST_F(AudioTest, RemoteControlConnectsByTheRolesOfTheRemote) {
    addInterface(device, controlInterface, "{'Connected': <false>}");
    offer(target);
    controlConnected(true);
    EXPECT_EQ(nextEvent("bt-avrcp-control-connection-state-changed"), "connected=true " + address);
    offer(controller);  // becomes known only now
    EXPECT_EQ(nextEvent("bt-avrcp-target-connection-state-changed"), "connected=true " + address);
    controlConnected(false);
    EXPECT_EQ(nextEvent("bt-avrcp-control-connection-state-changed"), "connected=false " + address);
    EXPECT_EQ(nextEvent("bt-avrcp-target-connection-state-changed"), "connected=false " + address);
    settle();
    EXPECT_EQ(countOf("bt-avrcp-control-connection-state-changed"), 2);
    EXPECT_EQ(countOf("bt-avrcp-target-connection-state-changed"), 2);
}

TEST_F(AudioTest, RemoteControlWithoutARoleIsNone) {
    addInterface(device, controlInterface, "{'Connected': <true>}");
    settle();
    EXPECT_EQ(countOf("bt-avrcp-control-connection-state-changed"), 0);
    EXPECT_EQ(countOf("bt-avrcp-target-connection-state-changed"), 0);
}

}  // namespace
