// Installs this build into a test directory: either single components, as a package does, or the
// whole build into a prefix that can be moved, as a developer does.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "tests/support/process/ChildProcess.h"
#include "tests/support/process/TemporaryDirectory.h"

/// Owner: the test. Threads: only the test's. Errors: std::filesystem::filesystem_error for
/// failures of the file system, std::runtime_error for a failed installation.
class Installation {
public:
    Installation();

    /// Installs a component below root(), at the paths that it has on the target machine.
    void install(const std::string& component);
    /// Installs everything into prefix().
    void installWhole();
    /// Moves prefix() to another place.
    void move();

    /// Returns all files, sorted, with their paths on the target machine. A link is
    /// "path -> target". Only empty directories are included; their paths end with a slash.
    std::vector<std::string> files() const;
    /// Returns where an absolute path of the target machine is below root().
    std::filesystem::path at(const std::string& path) const { return root().string() + path; }
    const std::filesystem::path& root() const { return m_directory.path(); }

    const std::filesystem::path& prefix() const { return m_prefix; }
    std::filesystem::path tool() const { return m_prefix / INSTALL_BINDIR / "corvane"; }
    std::filesystem::path templateDirectory() const { return m_prefix / "share/corvane/template"; }
    /// Returns a path for one test's files. It doesn't exist yet.
    std::filesystem::path unusedDirectory();

    /// Runs a program that finds the pkg-config files of prefix().
    ChildProcess::Result run(const std::vector<std::string>& command,
                             const std::filesystem::path& directory) const;
    /// The same, and returns the output. If the program fails, the test fails and shows the output.
    std::string succeed(const std::vector<std::string>& command,
                        const std::filesystem::path& directory) const;

private:
    TemporaryDirectory m_directory;
    std::filesystem::path m_prefix;
    int m_used = 0;
};
