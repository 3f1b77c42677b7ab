// The socket of injection: when it is there, and what is in its way.
#include "HostFixture.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <string>

namespace {

namespace fs = std::filesystem;
using testing::HasSubstr;

class InjectSocketTest : public HostFixture {
protected:
    // Starts a daemon, without plugins, that isn't the fixture's.
    ChildProcess::Options secondDaemon(const std::string& path) const {
        const auto home = directory() / "second";
        fs::create_directories(home / "plugins");
        return {{DAEMON},
                home,
                {{"CORVANE_INJECT_SOCKET", path},
                 {"DBUS_SYSTEM_BUS_ADDRESS", "unix:path=/nonexistent"}}};
    }

    // What a daemon says about a socket it can't have; it runs all the same.
    std::string complaintAbout(const std::string& path) const {
        ChildProcess second(secondDaemon(path));
        const auto line = second.waitForLine("INJECT: no injection: ");
        EXPECT_EQ(second.terminate(), 0);
        return line.value_or("");
    }
};

TEST_F(InjectSocketTest, IsForThisUserOnlyAndGoesWithTheDaemon) {
    startDaemon();
    EXPECT_EQ(fs::status(socket()).permissions(), fs::perms(0600));
    EXPECT_EQ(fs::status(socket().parent_path()).permissions(), fs::perms(0700));
    EXPECT_EQ(m_daemon->terminate(), 0);
    EXPECT_FALSE(fs::exists(socket()));
}

TEST_F(InjectSocketTest, ReplacesTheOneOfADaemonThatWasKilled) {
    startDaemon();
    m_daemon->sendSignal(SIGKILL);
    m_daemon->wait();
    EXPECT_TRUE(fs::exists(socket()));
    startDaemon();
    EXPECT_EQ(tool({"emit", "bt-adapter-state-changed"}).status, 0);
}

TEST_F(InjectSocketTest, LeavesTheOneOfARunningDaemonAlone) {
    startDaemon();
    EXPECT_THAT(complaintAbout(socket()),
                HasSubstr(socket().string() + ": another process listens there"));
    EXPECT_EQ(tool({"emit", "bt-adapter-state-changed"}).status, 0);
}

TEST_F(InjectSocketTest, LeavesAFileThatIsNoSocketAlone) {
    const auto path = directory() / "file";
    std::ofstream(path) << "kept";
    EXPECT_THAT(complaintAbout(path), HasSubstr("something that is not a socket"));
    EXPECT_EQ(fs::file_size(path), 4u);
}

TEST_F(InjectSocketTest, CannotHaveALongPath) {
    const auto path = (directory() / std::string(120, 'x')).string();
    ChildProcess second(secondDaemon(path));
    EXPECT_TRUE(second.waitForLine("loadPlugins"));
    EXPECT_EQ(second.terminate(), 0);
    EXPECT_THAT(second.errors(), HasSubstr("a path of at most 107 characters"));
}

TEST_F(InjectSocketTest, CannotBeInADirectoryThatCannotBeMade) {
    EXPECT_THAT(complaintAbout("/proc/corvane/inject.sock"),
                HasSubstr("its directory can't be created"));
}

TEST_F(InjectSocketTest, IsNotThereUnlessAskedFor) {
    auto options = secondDaemon("");
    ChildProcess second(options);
    ASSERT_TRUE(second.waitForLine("init bluetooth"));
    EXPECT_EQ(second.terminate(), 0);
    EXPECT_THAT(second.errors(), testing::Not(HasSubstr("INJECT")));
}

TEST_F(InjectSocketTest, TellsWhenNobodySubscribed) {
    ChildProcess second(secondDaemon(socket()));
    ASSERT_TRUE(second.waitForLine("init bluetooth"));
    ASSERT_TRUE(second.waitForLine("loadPlugins"));
    const auto result = tool({"emit", "bt-adapter-state-changed"});
    EXPECT_EQ(result.status, 0) << result.errors;
    EXPECT_EQ(result.output, "bt-adapter-state-changed: nobody subscribed\n");
}

TEST_F(InjectSocketTest, ToolTellsWhichSocketItTriedAndHowToStartADaemon) {
    const auto result = tool({"emit", "bt-adapter-state-changed"});
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.errors, "corvane: no daemon listens on " + socket().string() +
                                 " (No such file or directory)\nStart one with "
                                 "CORVANE_INJECT_SOCKET=" +
                                 socket().string() + " corvaned\n");
}

}  // namespace
