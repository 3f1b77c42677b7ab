#include "tests/kit/Installation.h"

#include <gtest/gtest.h>
#include <stdlib.h>

#include <stdexcept>

namespace fs = std::filesystem;

namespace {

// A compiler may have to share the machine with another build.
constexpr std::chrono::minutes limit{4};

}  // namespace

Installation::Installation() {
    std::string pattern = fs::current_path() / "installed.XXXXXX";
    if (mkdtemp(pattern.data()) == nullptr) {
        throw std::runtime_error("no directory " + pattern);
    }
    m_directory = pattern;
    m_prefix = m_directory / "first";
    const auto result =
        ChildProcess::run({{CMAKE, "--install", BUILD_TREE, "--prefix", m_prefix}}, limit);
    if (result.status != 0) {
        fs::remove_all(m_directory);
        throw std::runtime_error("cmake --install failed: " + result.output + result.errors);
    }
}

Installation::~Installation() {
    std::error_code ignored;
    fs::remove_all(m_directory, ignored);
}

void Installation::move() {
    const auto to = unusedDirectory();
    fs::create_directories(to);
    fs::rename(m_prefix, to / "moved");
    m_prefix = to / "moved";
}

fs::path Installation::unusedDirectory() {
    return m_directory / std::to_string(m_used++);
}

ChildProcess::Result Installation::run(const std::vector<std::string>& command,
                                       const fs::path& directory) const {
    const auto packages = m_prefix / INSTALL_LIBDIR "/pkgconfig";
    return ChildProcess::run({command, directory, {{"PKG_CONFIG_PATH", packages}}}, limit);
}

std::string Installation::succeed(const std::vector<std::string>& command,
                                  const fs::path& directory) const {
    const auto result = run(command, directory);
    EXPECT_EQ(result.status, 0) << result.output << result.errors;
    return result.output;
}
