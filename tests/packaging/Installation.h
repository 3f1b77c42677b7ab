// The components of a build, installed into a directory of their own.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

/// Owner: the test. The directory is removed with the object. Errors: what the system
/// refuses is thrown as std::filesystem::filesystem_error.
class Installation {
public:
    Installation();
    ~Installation();
    Installation(const Installation&) = delete;
    Installation& operator=(const Installation&) = delete;

    /// Adds a component; a failure fails the test.
    void install(const std::string& component);

    /// What is there, sorted, with the paths it would have on the machine it is for. A
    /// link is "path -> target"; a directory counts if it is empty, and ends with a slash.
    std::vector<std::string> files() const;

    /// Where an absolute path of that machine is here.
    std::filesystem::path at(const std::string& path) const { return m_root.string() + path; }
    const std::filesystem::path& root() const { return m_root; }

private:
    std::filesystem::path m_root;
};
