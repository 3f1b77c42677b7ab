#include "tests/support/process/HostFixture.h"

#include <sys/socket.h>
#include <sys/un.h>

#include <chrono>
#include <utility>

namespace fs = std::filesystem;

HostFixture::HostFixture() {
    m_daemonDirectory.setEnvironment("CORVANE_INJECT_SOCKET", socket());
    m_daemonDirectory.setEnvironment("CORVANE_EVENT_LOG_PRIVATE", "show");
}

void HostFixture::TearDown() {
    if (m_daemon && !m_daemon->wait(std::chrono::milliseconds(0))) {
        EXPECT_EQ(m_daemon->terminate(), 0) << m_daemon->errors();
    }
}

void HostFixture::startDaemon(const std::string& plugin,
                              const std::map<std::string, std::string>& environment) {
    m_daemonDirectory.addPlugin(plugin);
    auto options = m_daemonDirectory.daemon();
    for (const auto& [name, value] : environment) {
        options.environment[name] = value;
    }
    m_daemon = std::make_unique<ChildProcess>(options);
    ASSERT_TRUE(m_daemon->waitForLine("end init func")) << m_daemon->errors();
}

std::string HostFixture::nextLine(const std::string& text) {
    const auto line = m_daemon->waitForLine(text);
    EXPECT_TRUE(line) << "no line with " << text << " in\n" << m_daemon->errors();
    return line.value_or("");
}

std::string HostFixture::nextEvent(const std::string& event) {
    const auto head = "I EVENT_LOG: " + event;
    const auto line = nextLine(head);
    const auto rest = line.empty() ? line : line.substr(line.find(head) + head.size());
    return rest.starts_with(' ') ? rest.substr(1) : rest;
}

int HostFixture::connectPeer() const {
    const int fd = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    socket().string().copy(address.sun_path, sizeof address.sun_path - 1);
    EXPECT_EQ(connect(fd, reinterpret_cast<const sockaddr*>(&address), sizeof address), 0);
    return fd;
}

void HostFixture::expectServedAgain() const {
    const auto limit = std::chrono::steady_clock::now() + ChildProcess::DEFAULT_LIMIT;
    while (tool({"emit", "bt-adapter-state-changed"}).status != 0) {
        ASSERT_LT(std::chrono::steady_clock::now(), limit);
    }
}

ChildProcess::Result HostFixture::tool(const std::vector<std::string>& arguments) const {
    std::vector<std::string> command{TOOL, "--socket", socket()};
    command.insert(command.end(), arguments.begin(), arguments.end());
    return ChildProcess::run({command});
}

std::unique_ptr<ChildProcess> HostFixture::startTool(
    const std::vector<std::string>& arguments) const {
    std::vector<std::string> command{TOOL, "--socket", socket()};
    command.insert(command.end(), arguments.begin(), arguments.end());
    return std::make_unique<ChildProcess>(ChildProcess::Options{command});
}

std::map<std::string, std::string> HostFixture::withSettings(const std::string& text) const {
    m_daemonDirectory.setSettings(text);
    return {{"CORVANE_PLATFORM_CONF", m_daemonDirectory.settings()}};
}

ChildProcess::Result HostFixture::runAnyhow(std::vector<std::string> command) const {
    return ChildProcess::run(
        {std::move(command), {}, {{"DBUS_SYSTEM_BUS_ADDRESS", m_daemonDirectory.bus()}}});
}

std::string HostFixture::run(std::vector<std::string> command) const {
    const auto result = runAnyhow(std::move(command));
    EXPECT_EQ(result.status, 0) << result.errors;
    return result.output;
}

void BluezFixture::startBus() {
    const auto path = directory() / "bus";
    fs::remove(path);
    m_bus = std::make_unique<ChildProcess>(
        ChildProcess::Options{{"dbus-daemon", "--session", "--nofork", "--nopidfile", "--nosyslog",
                               "--address=unix:path=" + path.string(), "--print-address=1"}});
    ASSERT_TRUE(m_bus->waitForLine("unix:path=")) << m_bus->errors();
}

void BluezFixture::startBluez() {
    m_bluez = std::make_unique<ChildProcess>(ChildProcess::Options{
        {"/usr/bin/python3", "-m", "dbusmock", "--template", "bluez5"},
        {},
        {{"DBUS_SYSTEM_BUS_ADDRESS", "unix:path=" + (directory() / "bus").string()}}});
    run({"gdbus", "wait", "--system", "--timeout", "20", "org.bluez"});
}

void BluezFixture::mock(const std::vector<std::string>& methodAndArguments) const {
    std::vector<std::string> command{"busctl",    "--system", "call",
                                     "org.bluez", "/",        "org.bluez.Mock"};
    command.insert(command.end(), methodAndArguments.begin(), methodAndArguments.end());
    run(command);
}

void BluezFixture::update(const std::string& path, const std::string& interface,
                          const std::string& properties) const {
    run({"gdbus", "call", "--system", "-d", "org.bluez", "-o", path, "-m",
         "org.freedesktop.DBus.Mock.UpdateProperties", interface, properties});
}

void BluezFixture::startWithAdapter() {
    startBus();
    startBluez();
    mock({"AddAdapter", "ss", "hci0", "desk"});
    startDaemon();
    ASSERT_EQ(nextEvent("bt-adapter-state-changed"), "result=0 state=on");
}

void BluezFixture::addDevice() const {
    mock({"AddDevice", "sss", "hci0", DEVICE_ADDRESS, "Headset"});
}
