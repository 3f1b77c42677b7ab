// Tests of the installed unit with systemd's own tools, which need no running systemd.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

#include "tests/support/process/ChildProcess.h"
#include "tests/support/process/Installation.h"

namespace {

namespace fs = std::filesystem;

using testing::HasSubstr;

class ServiceTest : public testing::Test {
protected:
    void SetUp() override { m_installation.install("daemon"); }

    ChildProcess::Result verify() const {
        return ChildProcess::run(
            {.command = {"systemd-analyze", "verify", "--man=no",
                         "--root=" + m_installation.root().string(), "corvaned.service"}});
    }

    // `systemd-analyze verify` needs the targets that every service depends on.
    void addTargetsOfTheMachine() const {
        const auto directory = m_installation.at("/usr/lib/systemd/system");
        fs::create_directories(directory);
        for (const auto& entry : fs::directory_iterator("/usr/lib/systemd/system")) {
            if (entry.path().extension() == ".target" && entry.is_regular_file()) {
                fs::copy_file(entry.path(), directory / entry.path().filename());
            }
        }
    }

    void runAsRoot() const {
        const auto directory = unit() + ".d";
        fs::create_directory(directory);
        fs::copy_file(m_installation.at(DOCS "/corvane/examples/root.conf"),
                      directory + "/root.conf");
    }

    // The command fails if ten times the exposure level is above the limit.
    ChildProcess::Result exposure(int limit) const {
        return ChildProcess::run({.command = {"systemd-analyze", "security", "--offline=true",
                                              "--threshold=" + std::to_string(limit), unit()},
                                  .environment = {{"LC_ALL", "C"}}});
    }

    std::string unit() const { return m_installation.at(UNITS "/corvaned.service"); }

    Installation m_installation;
};

TEST_F(ServiceTest, HasNoFault) {
    addTargetsOfTheMachine();
    const auto result = verify();
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.errors, "");
}

TEST_F(ServiceTest, StartsTheInstalledDaemon) {
    addTargetsOfTheMachine();
    fs::remove(m_installation.at(BINARIES "/corvaned"));
    const auto result = verify();
    EXPECT_EQ(result.status, 1);
    EXPECT_THAT(result.errors, HasSubstr(BINARIES "/corvaned is not executable"));
}

// This holds even if a drop-in changes ProtectSystem=.
TEST_F(ServiceTest, MayNotWriteItsPlugins) {
    std::ifstream input(unit());
    const std::string text(std::istreambuf_iterator<char>(input), {});
    EXPECT_THAT(text, HasSubstr("\nReadOnlyPaths=-" LOADED_FROM "\n"));
}

TEST_F(ServiceTest, IsHardlyExposedAsAUserOfItsOwn) {
    const auto result = exposure(20);
    EXPECT_EQ(result.status, 0) << result.output << result.errors;
}

TEST_F(ServiceTest, IsLittleExposedAsRoot) {
    runAsRoot();
    const auto result = exposure(40);
    EXPECT_EQ(result.status, 0) << result.output << result.errors;
    EXPECT_THAT(result.output, HasSubstr("Service runs as root user"));
}

}  // namespace
