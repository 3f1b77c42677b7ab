// Runs the shell programs of docs/porting.md as they stand there, with the paths of a test
// directory: the update of a plugin while the daemon runs, and the init script.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "tests/support/process/ChildProcess.h"
#include "tests/support/process/Sandbox.h"

namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;
using testing::HasSubstr;

std::string contentOf(const fs::path& file) {
    std::ifstream input(file);
    return {std::istreambuf_iterator<char>(input), {}};
}

/// Returns the first shell program below the heading.
std::string programBelow(const std::string& heading) {
    const std::string page = contentOf(PAGE);
    const std::string opening = "\n```sh\n";
    const auto section = page.find("\n## " + heading + '\n');
    const auto start = page.find(opening, section);
    const auto end = page.find("\n```\n", start + 1);
    if (section == std::string::npos || start == std::string::npos || end == std::string::npos) {
        ADD_FAILURE() << "no program below " << heading;
        return "exit 1";
    }
    const auto first = start + opening.size();
    return page.substr(first, end + 1 - first);
}

/// Replaces every occurrence. It is an error if there is none.
void replace(std::string& text, const std::string& old, const std::string& replacement) {
    auto at = text.find(old);
    EXPECT_NE(at, std::string::npos) << old;
    for (; at != std::string::npos; at = text.find(old, at + replacement.size())) {
        text.replace(at, old.size(), replacement);
    }
}

class PluginUpdateTest : public testing::Test {
protected:
    /// Installs the fixture plugin as libfoo.so, with the programs in `path`. Returns the status.
    int update(const std::string& fixture, const std::string& path = "/usr/bin:/bin") {
        const auto built = m_sandbox.directory() / "libfoo.so";
        fs::copy_file(Sandbox::libraryOf(fixture), built);
        auto program = programBelow("Plugins and their update");
        replace(program, "/usr/share/corvane/plugins", m_sandbox.plugins());
        return ChildProcess::run(
                   {{"/bin/sh", "-c", program}, m_sandbox.directory(), {{"PATH", path}}})
            .status;
    }

    std::string changeState() { return m_sandbox.emit({"bt-adapter-state-changed", "state=off"}); }

    std::vector<std::string> plugins() const {
        std::vector<std::string> names;
        for (const auto& entry : fs::directory_iterator(m_sandbox.plugins())) {
            names.push_back(entry.path().filename());
        }
        return names;
    }

    Sandbox m_sandbox;
};

TEST_F(PluginUpdateTest, TheRunningDaemonKeepsTheOldLibraryAndTheNextOneLoadsTheNew) {
    m_sandbox.addPlugin("libfoo.so", "subscriber");
    m_sandbox.start();
    EXPECT_EQ(update("subscribes_twice"), 0);
    EXPECT_THAT(plugins(), ElementsAre("libfoo.so"));

    EXPECT_EQ(changeState(), "bt-adapter-state-changed: delivered to 1 callback\n");
    const Outcome before = m_sandbox.terminate();
    EXPECT_EQ(before.log.count("subscription "), 1U);
    EXPECT_TRUE(before.log.contains("libfoo.so: closed"));
    EXPECT_EQ(before.status, 0);

    m_sandbox.start();
    changeState();
    const Outcome after = m_sandbox.terminate();
    EXPECT_EQ(after.log.count("subscription "), 2U);
    EXPECT_EQ(after.status, 0);
}

TEST_F(PluginUpdateTest, APluginThatWasNotThereBeforeIsInstalled) {
    EXPECT_EQ(update("subscriber"), 0);
    EXPECT_THAT(plugins(), ElementsAre("libfoo.so"));
}

TEST_F(PluginUpdateTest, AnIncompleteCopyReplacesNothing) {
    m_sandbox.addPlugin("libfoo.so", "subscriber");
    const auto programs = m_sandbox.directory() / "programs";
    fs::create_directory(programs);
    std::ofstream(programs / "cp") << "#!/bin/sh\necho half >\"$2\"\nexit 1\n";
    fs::permissions(programs / "cp", fs::perms(0755));
    EXPECT_NE(update("subscribes_twice", programs.string() + ":/usr/bin:/bin"), 0);
    EXPECT_EQ(contentOf(m_sandbox.plugins() / "libfoo.so"),
              contentOf(Sandbox::libraryOf("subscriber")));
}

class InitScriptTest : public testing::Test {
protected:
    InitScriptTest() {
        auto script = programBelow("The init script");
        replace(script, "/usr/bin/corvaned", DAEMON);
        replace(script, "/run/corvane", m_directory.directory() / "run");
        auto user = ChildProcess::run({{"id", "-un"}}).output;
        user.pop_back();
        replace(script, "user=corvane", "user=" + user);
        std::ofstream(m_script) << script;
        m_directory.setSettings("[log]\noutput = file\nfile = " + m_log.string() + '\n');
        m_directory.setEnvironment("CORVANE_LOG_LEVEL", "debug");
        std::ofstream(m_log).close();
    }
    ~InitScriptTest() override { run("stop"); }

    int run(const std::string& action) const {
        auto options = m_directory.daemon();
        options.command = {"sh", m_script, action};
        return ChildProcess::run(options, LIMIT).status;
    }

    fs::path pidFile() const { return m_directory.directory() / "rund.pid"; }

    // The script waits 20 s for the daemon.
    static constexpr std::chrono::seconds LIMIT{40};
    DaemonDirectory m_directory;
    const fs::path m_script = m_directory.directory() / "script";
    const fs::path m_log = m_directory.directory() / "log";
};

constexpr const char* STARTED = "OUT << [void CommonDaemon::start()";
constexpr const char* ENDED = "OUT << [int main(int, char**)";

TEST_F(InitScriptTest, StartsTheDaemonAndEndsItInOrder) {
    ChildProcess log({{"tail", "-n", "+1", "-f", m_log}});
    EXPECT_EQ(run("start"), 0);
    ASSERT_TRUE(log.waitForLine(STARTED));
    EXPECT_TRUE(fs::exists(pidFile()));

    EXPECT_EQ(run("stop"), 0);
    EXPECT_THAT(contentOf(m_log), HasSubstr(ENDED));
    EXPECT_FALSE(fs::exists(pidFile()));
}

TEST_F(InitScriptTest, RestartEndsTheOldDaemonFirst) {
    ChildProcess log({{"tail", "-n", "+1", "-f", m_log}});
    EXPECT_EQ(run("start"), 0);
    ASSERT_TRUE(log.waitForLine(STARTED));
    EXPECT_EQ(run("restart"), 0);
    ASSERT_TRUE(log.waitForLine(ENDED));
    ASSERT_TRUE(log.waitForLine(STARTED));
}

TEST_F(InitScriptTest, StopWithoutADaemonSucceeds) {
    EXPECT_EQ(run("stop"), 0);
}

TEST_F(InitScriptTest, AnUnknownActionFails) {
    EXPECT_NE(run("dance"), 0);
}

}  // namespace
