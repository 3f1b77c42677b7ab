// This build, installed for the tests into a directory of their own.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "tests/support/process/ChildProcess.h"

/// Owner: the tests' program, on its main thread. Takes everything away at its end.
/// Errors: std::runtime_error if it can't be made.
class Installation {
public:
    Installation();
    ~Installation();
    Installation(const Installation&) = delete;
    Installation& operator=(const Installation&) = delete;

    /// Another place in the same directory.
    void move();

    const std::filesystem::path& prefix() const { return m_prefix; }
    std::filesystem::path tool() const { return m_prefix / INSTALL_BINDIR / "corvane"; }
    std::filesystem::path templateDirectory() const { return m_prefix / "share/corvane/template"; }

    /// A place for one test's files, that doesn't exist.
    std::filesystem::path unusedDirectory();

    /// Runs a program that finds this installation's pkg-config files.
    ChildProcess::Result run(const std::vector<std::string>& command,
                             const std::filesystem::path& directory) const;
    /// The same; a failure fails the test with what the program wrote.
    std::string succeed(const std::vector<std::string>& command,
                        const std::filesystem::path& directory) const;

private:
    std::filesystem::path m_directory;
    std::filesystem::path m_prefix;
    int m_used = 0;
};
