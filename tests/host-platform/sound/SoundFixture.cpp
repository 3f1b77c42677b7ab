#include "tests/host-platform/sound/SoundFixture.h"

#include <cstddef>
#include <utility>

namespace fs = std::filesystem;

namespace {

const std::string EVENT_HEAD = "I EVENT_LOG: sound-manager-speaker-changed ";

}  // namespace

SoundFixture::SoundFixture() {
    fs::create_directories(directory() / "home");
    m_daemonDirectory.addPlugin(EVENT_LOG_PLUGIN);
    m_daemonDirectory.setEnvironment("HOME", directory() / "home");
    m_daemonDirectory.setEnvironment("DBUS_SESSION_BUS_ADDRESS", m_daemonDirectory.bus());
}

void SoundFixture::TearDown() {
    if (m_daemon && !m_daemon->wait(std::chrono::milliseconds(0))) {
        EXPECT_EQ(m_daemon->terminate(), 0) << m_daemon->errors();
    }
}

ChildProcess::Options SoundFixture::beside(std::vector<std::string> command) const {
    auto options = m_daemonDirectory.daemon();
    options.command = std::move(command);
    return options;
}

void SoundFixture::startServer() {
    m_server = std::make_unique<ChildProcess>(beside(
        {"pulseaudio", "--daemonize=no", "--exit-idle-time=-1", "-n", "--log-level=info",
         "--load=module-null-sink sink_name=tv_speaker",
         "--load=module-null-sink sink_name=bt_headset", "--load=module-native-protocol-unix"}));
    ASSERT_TRUE(m_server->waitForLine("Daemon startup complete")) << m_server->errors();
}

void SoundFixture::waitForFollower(const std::string& sink) {
    ASSERT_TRUE(
        m_daemon->waitForLine("I SOUND: there is a sound server, its default sink is " + sink))
        << m_daemon->errors();
}

void SoundFixture::startDaemon(const std::string& settings) {
    m_daemonDirectory.setSettings(settings);
    m_daemon = std::make_unique<ChildProcess>(m_daemonDirectory.daemon());
}

void SoundFixture::waitForPlugin() {
    ASSERT_TRUE(m_daemon->waitForLine("end init func")) << m_daemon->errors();
}

std::string SoundFixture::pactl(std::vector<std::string> arguments) const {
    arguments.insert(arguments.begin(), "pactl");
    const auto result = ChildProcess::run(beside(std::move(arguments)));
    EXPECT_EQ(result.status, 0) << result.errors;
    return result.output;
}

int SoundFixture::speakerEvents() const {
    const auto log = m_daemon->errors();
    int count = 0;
    for (std::size_t place = 0; (place = log.find(EVENT_HEAD, place)) != std::string::npos;
         ++place) {
        ++count;
    }
    return count;
}

std::string SoundFixture::nextSpeaker() {
    const auto line = m_daemon->waitForLine(EVENT_HEAD);
    EXPECT_TRUE(line) << m_daemon->errors();
    return line ? line->substr(line->find(EVENT_HEAD) + EVENT_HEAD.size()) : "";
}
