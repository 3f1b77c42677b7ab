#include "tests/support/process/Installation.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <map>
#include <stdexcept>

namespace fs = std::filesystem;

namespace {

// Long enough for a compiler that shares the machine with another build.
constexpr std::chrono::minutes LIMIT{4};

void cmakeInstall(const std::vector<std::string>& options,
                  const std::map<std::string, std::string>& environment) {
    std::vector<std::string> command{CMAKE, "--install", BUILD_TREE};
    command.insert(command.end(), options.begin(), options.end());
    const auto result = ChildProcess::run({command, {}, environment}, LIMIT);
    if (result.status != 0) {
        throw std::runtime_error("cmake --install failed: " + result.output + result.errors);
    }
}

}  // namespace

// The directory is in the build tree: other users can write to the temporary directory, so
// `corvane` warns about plugins there.
Installation::Installation() : m_directory(fs::current_path()), m_prefix(root() / "first") {}

void Installation::install(const std::string& component) {
    cmakeInstall({"--component", component}, {{"DESTDIR", root()}});
}

void Installation::installWhole() {
    cmakeInstall({"--prefix", m_prefix}, {});
}

void Installation::move() {
    const auto to = unusedDirectory();
    fs::create_directories(to);
    fs::rename(m_prefix, to / "moved");
    m_prefix = to / "moved";
}

fs::path Installation::unusedDirectory() {
    return root() / std::to_string(m_used++);
}

std::vector<std::string> Installation::files() const {
    std::vector<std::string> files;
    for (const auto& entry : fs::recursive_directory_iterator(root())) {
        const auto path = entry.path().string().substr(root().string().size());
        if (entry.is_symlink()) {
            files.push_back(path + " -> " + fs::read_symlink(entry.path()).string());
        } else if (!entry.is_directory()) {
            files.push_back(path);
        } else if (fs::is_empty(entry.path())) {
            files.push_back(path + '/');
        }
    }
    std::ranges::sort(files);
    return files;
}

ChildProcess::Result Installation::run(const std::vector<std::string>& command,
                                       const fs::path& directory) const {
    const auto packages = m_prefix / INSTALL_LIBDIR "/pkgconfig";
    return ChildProcess::run({command, directory, {{"PKG_CONFIG_PATH", packages}}}, LIMIT);
}

std::string Installation::succeed(const std::vector<std::string>& command,
                                  const fs::path& directory) const {
    const auto result = run(command, directory);
    EXPECT_EQ(result.status, 0) << result.output << result.errors;
    return result.output;
}
