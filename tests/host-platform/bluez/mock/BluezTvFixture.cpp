#include "tests/host-platform/bluez/mock/BluezTvFixture.h"

void BluezTvFixture::startTvBluez() {
    m_bluez = std::make_unique<ChildProcess>(ChildProcess::Options{
        {"/usr/bin/python3", "-B", "-m", "dbusmock", "--template", BLUEZ_TV_TEMPLATE},
        {},
        {{"DBUS_SYSTEM_BUS_ADDRESS", "unix:path=" + (directory() / "bus").string()}}});
    run({"gdbus", "wait", "--system", "--timeout", "20", "org.bluez"});
}

void BluezTvFixture::startTv() {
    startBus();
    startTvBluez();
    mock({"AddAdapter", "ss", "hci0", "desk"});
    addDevice();
}

void BluezTvFixture::startDaemonThere(const std::string& bluezSettings) {
    startDaemon(EVENT_LOG_PLUGIN,
                withSettings("[bluez]\ninput_directory = " + (directory() / "input").string() +
                             "\n" + bluezSettings));
    ASSERT_EQ(nextEvent("bt-adapter-state-changed"), "result=0 state=on");
}

void BluezTvFixture::startAll(const std::string& bluezSettings) {
    startTv();
    startDaemonThere(bluezSettings);
}

std::string BluezTvFixture::call(const std::string& method,
                                 const std::vector<std::string>& arguments) const {
    std::vector<std::string> command{"gdbus", "call",      "--system",
                                     "-d",    "org.bluez", "-o",
                                     "/",     "-m",        "org.bluez.Mock." + method};
    command.insert(command.end(), arguments.begin(), arguments.end());
    return run(command);
}

void BluezTvFixture::addInterface(const std::string& path, const std::string& interface,
                                  const std::string& properties) const {
    call("AddInterface", {path, interface, properties});
}

void BluezTvFixture::removeInterface(const std::string& path, const std::string& interface) const {
    call("RemoveInterface", {path, interface});
}

void BluezTvFixture::update(const std::string& path, const std::string& interface,
                            const std::string& properties) const {
    call("ChangeProperties", {path, interface, properties, "@as []"});
}

void BluezTvFixture::updateDevice(const std::string& properties) const {
    update(DEVICE, DEVICE_INTERFACE, properties);
}

void BluezTvFixture::invalidate(const std::string& property) const {
    call("ChangeProperties", {DEVICE, DEVICE_INTERFACE, "@a{sv} {}", "['" + property + "']"});
}

void BluezTvFixture::settle() {
    const auto name = "mark " + std::to_string(++m_marks);
    update(ADAPTER, "org.bluez.Adapter1", "{'Alias': <'" + name + "'>}");
    EXPECT_EQ(nextEvent("bt-adapter-name-changed"), "name=\"" + name + '"');
}

int BluezTvFixture::countOf(const std::string& event) const {
    const auto log = m_daemon->errors();
    const auto head = "EVENT_LOG: " + event + ' ';
    int count = 0;
    for (auto at = log.find(head); at != std::string::npos; at = log.find(head, at + 1)) {
        ++count;
    }
    return count;
}
