// This build, installed for tests into a directory of their own: component by component, as a
// package does it, or whole and movable, as a developer does it.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "tests/support/process/ChildProcess.h"
#include "tests/support/process/TemporaryDirectory.h"

/// Owner: the test, on its thread. Errors: what the system refuses is thrown as
/// std::filesystem::filesystem_error, a failing installation as std::runtime_error.
class Installation {
public:
    Installation();

    /// Adds a component at the paths of the machine it is for, below root().
    void install(const std::string& component);
    /// Installs everything into prefix().
    void installWhole();
    /// Moves prefix() to another place.
    void move();

    /// All files, sorted, with the paths they would have on the machine they are for. A link is
    /// "path -> target"; a directory counts if it is empty, and ends with a slash.
    std::vector<std::string> files() const;
    /// Where an absolute path of that machine is here.
    std::filesystem::path at(const std::string& path) const { return root().string() + path; }
    const std::filesystem::path& root() const { return m_directory.path(); }

    const std::filesystem::path& prefix() const { return m_prefix; }
    std::filesystem::path tool() const { return m_prefix / INSTALL_BINDIR / "corvane"; }
    std::filesystem::path templateDirectory() const { return m_prefix / "share/corvane/template"; }
    /// A place for one test's files, that doesn't exist.
    std::filesystem::path unusedDirectory();

    /// Runs a program that finds the pkg-config files of prefix().
    ChildProcess::Result run(const std::vector<std::string>& command,
                             const std::filesystem::path& directory) const;
    /// The same; a failure fails the test with what the program wrote.
    std::string succeed(const std::vector<std::string>& command,
                        const std::filesystem::path& directory) const;

private:
    TemporaryDirectory m_directory;
    std::filesystem::path m_prefix;
    int m_used = 0;
};
