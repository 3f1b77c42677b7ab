// The directory in which a plugin is checked, with nothing of the user's in reach.
#pragma once

#include <filesystem>
#include <map>
#include <string>

namespace corvane::check {

/// Owner: the command. Removes the directory at its end. Throws CheckError and what the
/// file system throws.
class WorkDirectory {
public:
    /// Copies the library into plugins/ below a new directory.
    explicit WorkDirectory(const std::filesystem::path& library);
    ~WorkDirectory();
    WorkDirectory(const WorkDirectory&) = delete;
    WorkDirectory& operator=(const WorkDirectory&) = delete;

    const std::filesystem::path& path() const { return m_directory; }
    /// The name of the library's file.
    const std::string& name() const { return m_name; }
    std::filesystem::path plugins() const { return m_directory / "plugins"; }
    std::filesystem::path copy() const { return plugins() / m_name; }

    /// For a process that runs the plugin: no bus, no sound server, settings of its own.
    std::map<std::string, std::string> environment() const;

private:
    std::filesystem::path m_directory;
    std::string m_name;
};

}  // namespace corvane::check
