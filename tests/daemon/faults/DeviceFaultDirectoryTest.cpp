// Faults of the plugin directory, and directories with many files.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "tests/daemon/faults/Figures.h"
#include "tests/daemon/faults/Mounts.h"
#include "tests/support/process/DaemonLog.h"
#include "tests/support/process/Sandbox.h"

namespace fs = std::filesystem;

namespace {

class DeviceFaultDirectoryTest : public testing::Test {
protected:
    // Measures the start and the end of the daemon. Expects exit status 0.
    Outcome startAndTerminate(const std::string& what) {
        Longest start;
        auto since = Longest::Clock::now();
        m_sandbox.start();
        EXPECT_LT(Longest::Clock::now() - since, HANG);
        start.add(since);
        Longest end;
        since = Longest::Clock::now();
        const Outcome outcome = m_sandbox.terminate();
        EXPECT_LT(Longest::Clock::now() - since, HANG);
        end.add(since);
        EXPECT_EQ(outcome.status, 0);
        printFigure(what + ": started in " + start.text() + ", ended in " + end.text());
        return outcome;
    }
    void expectNoPlugins(const std::string& what) {
        const Outcome outcome = startAndTerminate(what);
        EXPECT_EQ(outcome.log.ofPriority("E").transcript(),
                  "E QVX: FileManager.cpp: getFilesInDirectory(#) > can not open directory, "
                  "plugins/\n");
    }
    // Moves the plugin directory to a file system of its own, on which the daemon's starter runs
    // the shell commands `afterwards`. Returns false if the system does not allow mounts.
    bool setPluginFileSystem(const std::string& afterwards) {
        fs::rename(m_sandbox.plugins(), m_sandbox.directory() / "source");
        fs::create_directory(m_sandbox.plugins());
        const auto starter = starterWithMounts(
            "mount -t tmpfs -o size=1m none plugins; cp -p source/* plugins; " + afterwards);
        m_sandbox.setStarter(starter);
        return !starter.empty();
    }
    static std::vector<std::string> names(const Log& log, const std::string& said) {
        std::vector<std::string> found;
        for (const LogLine& line : log.lines()) {
            if (line.tag == "FIXTURE" && line.text.ends_with(": " + said)) {
                found.push_back(line.text.substr(0, line.text.find(": ")));
            }
        }
        return found;
    }

    Sandbox m_sandbox;
};

TEST_F(DeviceFaultDirectoryTest, AMissingOneIsAnErrorLineAndNoPlugins) {
    fs::remove(m_sandbox.plugins());
    expectNoPlugins("Missing plugin directory");
}

TEST_F(DeviceFaultDirectoryTest, AnUnreadableOneIsAnErrorLineAndNoPlugins) {
    m_sandbox.addPlugin("libfoo.so");
    fs::permissions(m_sandbox.plugins(), fs::perms::none);
    if (geteuid() == 0) {
        m_sandbox.setStarter({"setpriv", "--bounding-set", "-dac_override,-dac_read_search"});
    }
    expectNoPlugins("Unreadable plugin directory");
    fs::permissions(m_sandbox.plugins(), fs::perms::owner_all);
}

TEST_F(DeviceFaultDirectoryTest, OnAReadOnlyFileSystemAllIsAsEver) {
    m_sandbox.addPlugin("libfoo.so");
    const auto ordinary = m_sandbox.startAndTerminate().log.transcript();
    if (!setPluginFileSystem("mount -o remount,bind,ro plugins; ! touch plugins/x 2>/dev/null")) {
        GTEST_SKIP() << "this system does not allow mounts";
    }
    const Outcome outcome = startAndTerminate("Plugin directory on a read-only file system");
    EXPECT_EQ(outcome.log.transcript(), ordinary);
}

TEST_F(DeviceFaultDirectoryTest, OnAFullFileSystemAllIsAsEver) {
    m_sandbox.addPlugin("libfoo.so");
    const auto ordinary = m_sandbox.startAndTerminate().log.transcript();
    if (!setPluginFileSystem("! cat /dev/zero 2>/dev/null >plugins/ballast")) {
        GTEST_SKIP() << "this system does not allow mounts";
    }
    const Outcome outcome = startAndTerminate("Plugin directory on a full file system");
    EXPECT_EQ(outcome.log.transcript(), ordinary);
}

TEST_F(DeviceFaultDirectoryTest, AsManyPluginsAsThereAreAreStartedAndStopped) {
    const auto count = static_cast<std::size_t>(lengthOf("CORVANE_FAULT_PLUGINS", 512));
    for (std::size_t i = 0; i < count; ++i) {
        m_sandbox.addPlugin("lib" + std::to_string(i) + ".so");
    }
    const Outcome outcome = startAndTerminate(std::to_string(count) + " plugins");
    const auto started = names(outcome.log, "init");
    EXPECT_EQ(started.size(), count);
    EXPECT_EQ(names(outcome.log, "deinit"), started);
    EXPECT_EQ(names(outcome.log, "closed"), started);
    EXPECT_TRUE(outcome.log.ofPriority("E").lines().empty());
}

TEST_F(DeviceFaultDirectoryTest, AmongManyFilesTheFewPluginsAreFound) {
    const int count = lengthOf("CORVANE_FAULT_FILES", 2000);
    for (int i = 0; i < count; ++i) {
        const char* const ending = i % 2 == 0 ? ".so.1" : ".txt";
        std::ofstream(m_sandbox.plugins() / ("file" + std::to_string(i) + ending)).close();
    }
    for (const char* name : {"liba.so", "libb.so", "libc.so"}) {
        m_sandbox.addPlugin(name);
    }
    const Outcome outcome =
        startAndTerminate(std::to_string(count) + " other files beside 3 plugins");
    EXPECT_THAT(names(outcome.log, "deinit"),
                testing::UnorderedElementsAre("liba.so", "libb.so", "libc.so"));
    EXPECT_TRUE(outcome.log.ofPriority("E").lines().empty());
}

// The daemon tries to load each of the files and logs an error for each.
TEST_F(DeviceFaultDirectoryTest, ManyFilesThatOnlyLookLikePluginsAreNamedEach) {
    const auto count = static_cast<std::size_t>(lengthOf("CORVANE_FAULT_FILES", 2000)) / 10;
    m_sandbox.addPlugin("liba.so");
    for (std::size_t i = 0; i < count; ++i) {
        std::ofstream(m_sandbox.plugins() / ("file" + std::to_string(i) + ".so")) << "no library\n";
    }
    const Outcome outcome =
        startAndTerminate(std::to_string(count) + " files beside 1 plugin that only look like one");
    EXPECT_EQ(outcome.log.count("end dlopen : file"), count);
    EXPECT_EQ(outcome.log.ofPriority("E").count("Exception : fail to open plugin"), count);
    EXPECT_EQ(outcome.log.ofPriority("E").lines().size(), count);
    EXPECT_EQ(names(outcome.log, "deinit").size(), 1U);
}

}  // namespace
