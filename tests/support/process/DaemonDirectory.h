// The directory in which a test starts the daemon, and an environment in which the daemon finds
// nothing of this machine: neither a bus nor a sound server, settings or a home directory.
#pragma once

#include <filesystem>
#include <map>
#include <string>

#include "tests/support/process/ChildProcess.h"
#include "tests/support/process/TemporaryDirectory.h"

/// Owner: the test. Errors: what the system refuses is thrown as std::system_error.
class DaemonDirectory {
public:
    DaemonDirectory();

    const std::filesystem::path& directory() const { return m_directory.path(); }
    std::filesystem::path plugins() const { return directory() / "plugins"; }
    std::filesystem::path settings() const { return directory() / "platform.conf"; }
    std::filesystem::path socket() const { return directory() / "inject.sock"; }
    /// Where a bus is expected.
    std::string bus() const { return "unix:path=" + (directory() / "bus").string(); }

    /// Puts a copy of the library into the plugin directory: the loader takes two links to one
    /// file for one library.
    void addPlugin(const std::filesystem::path& library) const;
    /// The settings of the host platform, instead of those before; none by default.
    void setSettings(const std::string& text) const;
    void setEnvironment(const std::string& variable, const std::string& value);

    /// How the daemon is started here.
    ChildProcess::Options daemon() const;

private:
    TemporaryDirectory m_directory;
    std::map<std::string, std::string> m_environment;
};
