// Runs a sound server and the daemon for a test.
#include "tests/host-platform/sound/SoundFixture.h"

#include <stdlib.h>

#include <cstddef>
#include <fstream>
#include <utility>

namespace fs = std::filesystem;

namespace {

const std::string eventHead = "I EVENT_LOG: sound-manager-speaker-changed ";

const std::vector<std::string> foreignVariables{"ECORE_NO_SYSTEM_MODULES", "PULSE_SERVER",
                                                "PULSE_SINK"};

}  // namespace

SoundFixture::SoundFixture() {
    char name[] = "/tmp/corvane-sound-XXXXXX";
    m_directory = mkdtemp(name);
    fs::create_directories(m_directory / "plugins");
    fs::create_directories(m_directory / "home");
    fs::copy_file(EVENT_LOG_PLUGIN,
                  m_directory / "plugins" / fs::path(EVENT_LOG_PLUGIN).filename());
}

SoundFixture::~SoundFixture() {
    m_daemon.reset();
    m_server.reset();
    fs::remove_all(m_directory);
}

void SoundFixture::TearDown() {
    if (m_daemon && !m_daemon->wait(std::chrono::milliseconds(0))) {
        EXPECT_EQ(m_daemon->terminate(), 0) << m_daemon->errors();
    }
}

std::map<std::string, std::string> SoundFixture::environment() const {
    return {{"XDG_RUNTIME_DIR", m_directory},
            {"HOME", m_directory / "home"},
            {"CORVANE_LOG_LEVEL", "info"},
            {"CORVANE_PLATFORM_CONF", m_directory / "platform.conf"},
            {"DBUS_SYSTEM_BUS_ADDRESS", "unix:path=" + (m_directory / "bus").string()},
            {"DBUS_SESSION_BUS_ADDRESS", "unix:path=" + (m_directory / "bus").string()}};
}

void SoundFixture::startServer() {
    m_server = std::make_unique<ChildProcess>(ChildProcess::Options{
        {"pulseaudio", "--daemonize=no", "--exit-idle-time=-1", "-n", "--log-level=info",
         "--load=module-null-sink sink_name=tv_speaker",
         "--load=module-null-sink sink_name=bt_headset", "--load=module-native-protocol-unix"},
        {},
        environment(),
        foreignVariables});
    ASSERT_TRUE(m_server->waitForLine("Daemon startup complete")) << m_server->errors();
}

void SoundFixture::waitForFollower(const std::string& sink) {
    ASSERT_TRUE(
        m_daemon->waitForLine("I SOUND: there is a sound server, its default sink is " + sink))
        << m_daemon->errors();
}

void SoundFixture::startDaemon(const std::string& settings) {
    std::ofstream(m_directory / "platform.conf") << settings;
    m_daemon = std::make_unique<ChildProcess>(
        ChildProcess::Options{{DAEMON}, m_directory, environment(), foreignVariables});
}

void SoundFixture::waitForPlugin() {
    ASSERT_TRUE(m_daemon->waitForLine("end init func")) << m_daemon->errors();
}

std::string SoundFixture::pactl(std::vector<std::string> arguments) const {
    arguments.insert(arguments.begin(), "pactl");
    const auto result =
        ChildProcess::run({std::move(arguments), {}, environment(), foreignVariables});
    EXPECT_EQ(result.status, 0) << result.errors;
    return result.output;
}

int SoundFixture::speakerEvents() const {
    const auto log = m_daemon->errors();
    int count = 0;
    for (std::size_t place = 0; (place = log.find(eventHead, place)) != std::string::npos;
         ++place) {
        ++count;
    }
    return count;
}

std::string SoundFixture::nextSpeaker() {
    const auto line = m_daemon->waitForLine(eventHead);
    EXPECT_TRUE(line) << m_daemon->errors();
    return line ? line->substr(line->find(eventHead) + eventHead.size()) : "";
}
