#include "tests/support/process/DaemonDirectory.h"

#include <fstream>

namespace fs = std::filesystem;

DaemonDirectory::DaemonDirectory() {
    fs::create_directory(plugins());
    setSettings("");
    m_environment = {{"DBUS_SYSTEM_BUS_ADDRESS", bus()},  {"CORVANE_PLATFORM_CONF", settings()},
                     {"CORVANE_INJECT_SOCKET", socket()}, {"CORVANE_LOG_LEVEL", "info"},
                     {"XDG_RUNTIME_DIR", directory()},    {"HOME", directory()}};
}

void DaemonDirectory::addPlugin(const fs::path& library) const {
    fs::copy_file(library, plugins() / library.filename(), fs::copy_options::overwrite_existing);
}

void DaemonDirectory::setSettings(const std::string& text) const {
    std::ofstream(settings()) << text;
}

void DaemonDirectory::setEnvironment(const std::string& variable, const std::string& value) {
    m_environment[variable] = value;
}

ChildProcess::Options DaemonDirectory::daemon() const {
    return {{DAEMON},
            directory(),
            m_environment,
            {"ECORE_NO_SYSTEM_MODULES", "PULSE_SERVER", "PULSE_SINK"}};
}
