// Fixture with a temporary settings file. CORVANE_PLATFORM_CONF names the file during the test.
#pragma once

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

#include "platform/host/settings/Settings.h"
#include "tests/support/process/TemporaryDirectory.h"

class SettingsFixture : public testing::Test {
protected:
    SettingsFixture() { setenv("CORVANE_PLATFORM_CONF", path().c_str(), 1); }

    ~SettingsFixture() override {
        setenv("CORVANE_PLATFORM_CONF", "/dev/null", 1);
        unsetenv("CORVANE_LOG_LEVEL");
        unsetenv("CORVANE_INJECT_SOCKET");
    }

    const std::filesystem::path& directory() const { return m_directory.path(); }
    std::string path() const { return directory() / "platform.conf"; }
    void write(const std::string& text) const { std::ofstream(path()) << text; }
    corvane::host::Settings read() const { return corvane::host::readSettings(); }

private:
    TemporaryDirectory m_directory;
};
