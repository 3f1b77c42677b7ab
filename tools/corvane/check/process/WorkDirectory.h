// The temporary directory in which a plugin is checked, and the environment that keeps it away from
// the user's session.
#pragma once

#include <filesystem>
#include <map>
#include <string>

namespace corvane::check {

/// Owner: the command, on its thread. The destructor removes the directory. Errors: CheckError and
/// std::filesystem::filesystem_error.
class WorkDirectory {
public:
    /// Creates the directory and copies the library into its folder plugins/.
    explicit WorkDirectory(const std::filesystem::path& library);
    ~WorkDirectory();
    WorkDirectory(const WorkDirectory&) = delete;
    WorkDirectory& operator=(const WorkDirectory&) = delete;

    const std::filesystem::path& path() const { return m_directory; }
    /// The file name of the library.
    const std::string& name() const { return m_name; }
    std::filesystem::path plugins() const { return m_directory / "plugins"; }
    std::filesystem::path copy() const { return plugins() / m_name; }

    /// The environment of a process that runs the plugin: no bus, no sound server, own settings.
    std::map<std::string, std::string> environment() const;

private:
    std::filesystem::path m_directory;
    std::string m_name;
};

}  // namespace corvane::check
