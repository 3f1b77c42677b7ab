// The directory in which a test starts the daemon. The environment hides the machine's bus, sound
// server, settings and home directory from the daemon.
#pragma once

#include <filesystem>
#include <map>
#include <string>

#include "tests/support/process/ChildProcess.h"
#include "tests/support/process/TemporaryDirectory.h"

/// Owner: the test. Errors: failures of system calls are thrown as std::system_error.
class DaemonDirectory {
public:
    DaemonDirectory();

    const std::filesystem::path& directory() const { return m_directory.path(); }
    std::filesystem::path plugins() const { return directory() / "plugins"; }
    std::filesystem::path settings() const { return directory() / "platform.conf"; }
    std::filesystem::path socket() const { return directory() / "inject.sock"; }
    /// Returns the address at which the daemon expects the system bus.
    std::string bus() const { return "unix:path=" + (directory() / "bus").string(); }

    /// Copies the library into the plugin directory. Links don't work: the dynamic loader loads two
    /// links to the same file as one library.
    void addPlugin(const std::filesystem::path& library) const;
    /// Replaces the settings of the host platform. They are empty by default.
    void setSettings(const std::string& text) const;
    void setEnvironment(const std::string& variable, const std::string& value);

    /// Returns the options that start the daemon in this directory.
    ChildProcess::Options daemon() const;

private:
    TemporaryDirectory m_directory;
    std::map<std::string, std::string> m_environment;
};
