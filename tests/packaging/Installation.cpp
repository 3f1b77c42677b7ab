#include "tests/packaging/Installation.h"

#include <gtest/gtest.h>
#include <stdlib.h>

#include <algorithm>
#include <cerrno>
#include <system_error>

#include "tests/support/process/ChildProcess.h"

namespace fs = std::filesystem;

Installation::Installation() {
    std::string name = (fs::temp_directory_path() / "corvane-packaging-XXXXXX").string();
    if (mkdtemp(name.data()) == nullptr) {
        throw fs::filesystem_error("mkdtemp", name,
                                   std::error_code(errno, std::generic_category()));
    }
    m_root = name;
}

Installation::~Installation() {
    std::error_code ignored;
    fs::remove_all(m_root, ignored);
}

void Installation::install(const std::string& component) {
    const auto result =
        ChildProcess::run({.command = {CMAKE, "--install", BUILD, "--component", component},
                           .environment = {{"DESTDIR", m_root.string()}}});
    ASSERT_EQ(result.status, 0) << result.output << result.errors;
}

std::vector<std::string> Installation::files() const {
    std::vector<std::string> files;
    for (const auto& entry : fs::recursive_directory_iterator(m_root)) {
        const auto path = entry.path().string().substr(m_root.string().size());
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
