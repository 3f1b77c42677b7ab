// Tests that changes of the sound server's default sink reach the plugin as events.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <signal.h>

#include <sstream>
#include <string>

#include "tests/host-platform/sound/SoundFixture.h"

namespace {

using testing::ContainsRegex;
using testing::HasSubstr;
using testing::Not;

using SpeakerTest = SoundFixture;

TEST_F(SpeakerTest, FollowsTheDefaultSinkAndNotTheFirstOne) {
    startServer();
    startDaemon("[sound]\nroute.bt_* = bluetooth\nroute.tv_* = line-out\nroute.* = optical\n");
    waitForFollower();
    makeDefault("bt_headset");
    EXPECT_EQ(nextSpeaker(), "route=bluetooth");
    makeDefault("tv_speaker");
    EXPECT_EQ(nextSpeaker(), "route=line-out");
    EXPECT_EQ(speakerEvents(), 2);
}

TEST_F(SpeakerTest, IgnoresOtherChangesOfTheServer) {
    startServer();
    startDaemon("[sound]\nroute.bt_* = bluetooth\n");
    waitForFollower();
    pactl({"set-sink-volume", "tv_speaker", "40%"});
    pactl({"set-default-source", "bt_headset.monitor"});
    makeDefault("tv_speaker");
    makeDefault("bt_headset");
    EXPECT_EQ(nextSpeaker(), "route=bluetooth");
    EXPECT_EQ(speakerEvents(), 1);
}

TEST_F(SpeakerTest, TellsTheRouteFromTheSinksProperties) {
    startServer();
    startDaemon();
    waitForFollower();
    const auto load = [this](const std::string& name, const std::string& properties) {
        pactl({"load-module", "module-null-sink", "sink_name=" + name,
               "sink_properties=" + properties});
    };
    load("by_bus", "device.bus=bluetooth");
    load("by_api", "device.api=bluez5");
    load("by_form", "device.form_factor=hdmi");
    makeDefault("by_bus");
    EXPECT_EQ(nextSpeaker(), "route=bluetooth");
    makeDefault("bt_headset");
    EXPECT_EQ(nextSpeaker(), "route=speaker");
    makeDefault("by_api");
    EXPECT_EQ(nextSpeaker(), "route=bluetooth");
    makeDefault("by_form");
    EXPECT_EQ(nextSpeaker(), "route=hdmi");
}

TEST_F(SpeakerTest, SeesTheSinkThatTakesOverFromOneThatGoes) {
    startServer();
    startDaemon("[sound]\nroute.headphones = hdmi\n");
    waitForFollower();
    const auto module = pactl({"load-module", "module-null-sink", "sink_name=headphones"});
    makeDefault("headphones");
    EXPECT_EQ(nextSpeaker(), "route=hdmi");
    pactl({"unload-module", module.substr(0, module.find('\n'))});
    EXPECT_EQ(nextSpeaker(), "route=speaker");
}

TEST_F(SpeakerTest, ReturnsToAServerThatWasKilled) {
    startServer();
    startDaemon("[sound]\nroute.bt_* = bluetooth\n");
    waitForFollower();
    m_server->sendSignal(SIGKILL);
    ASSERT_TRUE(m_server->wait());
    startServer();
    waitForFollower();
    EXPECT_EQ(speakerEvents(), 0);
    makeDefault("bt_headset");
    EXPECT_EQ(nextSpeaker(), "route=bluetooth");
    EXPECT_EQ(speakerEvents(), 1);
}

TEST_F(SpeakerTest, ReportsWhatChangedWhileThereWasNoServer) {
    startServer();
    startDaemon("[sound]\nroute.bt_* = bluetooth\n");
    waitForFollower();
    makeDefault("bt_headset");
    EXPECT_EQ(nextSpeaker(), "route=bluetooth");
    m_server->sendSignal(SIGKILL);
    ASSERT_TRUE(m_server->wait());
    startServer();
    EXPECT_EQ(nextSpeaker(), "route=speaker");
}

TEST_F(SpeakerTest, TakesTheServerOfTheSettings) {
    startServer();
    startDaemon("[sound]\nserver = unix:" + (directory() / "elsewhere").string() + "\n");
    pactl({"load-module", "module-native-protocol-unix",
           "socket=" + (directory() / "elsewhere").string(), "auth-anonymous=1"});
    waitForFollower();
    makeDefault("bt_headset");
    EXPECT_EQ(nextSpeaker(), "route=speaker");
}

// Nothing is logged while there is no server. A server that starts later is found.
TEST_F(SpeakerTest, IsSilentWithoutAServer) {
    startDaemon();
    waitForPlugin();
    startServer();
    waitForFollower();
    const auto log = m_daemon->errors();
    EXPECT_EQ(log.find(" SOUND: "), log.find(" SOUND: there is a sound server"));
    makeDefault("bt_headset");
    EXPECT_EQ(nextSpeaker(), "route=speaker");
}

TEST_F(SpeakerTest, EndsWithoutAServer) {
    startDaemon("[callbacks]\nslow_ms = 0\n");
    waitForPlugin();
    EXPECT_EQ(m_daemon->terminate(), 0) << m_daemon->errors();
    std::istringstream log(m_daemon->errors());
    for (std::string line; std::getline(log, line);) {
        EXPECT_THAT(line, ContainsRegex("^[0-9:.]+ [0-9]+ [DI] "));
        EXPECT_THAT(line, Not(HasSubstr("SOUND")));
    }
}

}  // namespace
