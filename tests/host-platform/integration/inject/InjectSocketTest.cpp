// Tests when the socket of injection is created and removed, and what prevents its creation.
#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/file.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <string>

#include "tests/support/process/HostFixture.h"

namespace {

namespace fs = std::filesystem;
using testing::HasSubstr;

class InjectSocketTest : public HostFixture {
protected:
    // Returns the options of a second daemon, without plugins, whose socket is `path`.
    ChildProcess::Options secondDaemon(const std::string& path) const {
        const auto home = directory() / "second";
        fs::create_directories(home / "plugins");
        return {{DAEMON},
                home,
                {{"CORVANE_INJECT_SOCKET", path},
                 {"DBUS_SYSTEM_BUS_ADDRESS", "unix:path=/nonexistent"}}};
    }

    // Creates the directory of the socket with this mode.
    void makeDirectory(unsigned mode) const {
        fs::create_directory(socket().parent_path());
        fs::permissions(socket().parent_path(), fs::perms(mode));
    }

    // Binds a socket to the daemon's path and returns it.
    int bindSocket() const {
        const int fd = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
        sockaddr_un address{};
        address.sun_family = AF_UNIX;
        socket().string().copy(address.sun_path, sizeof address.sun_path - 1);
        EXPECT_EQ(bind(fd, reinterpret_cast<const sockaddr*>(&address), sizeof address), 0);
        return fd;
    }

    // Starts a daemon that can't create its socket and returns the line that it logs. Expects the
    // daemon to run nevertheless.
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

TEST_F(InjectSocketTest, CannotBeInADirectoryThatOthersMayWriteTo) {
    for (const unsigned mode : {0770U, 0702U, 01777U}) {
        makeDirectory(mode);
        EXPECT_THAT(complaintAbout(socket()),
                    HasSubstr(socket().string() + ": others may write to its directory"));
        EXPECT_TRUE(fs::is_empty(socket().parent_path()));
    }
}

TEST_F(InjectSocketTest, CannotBeInADirectoryOfAnotherUser) {
    if (geteuid() != 0) {
        GTEST_SKIP() << "only root can give a directory away";
    }
    makeDirectory(0755);
    ASSERT_EQ(chown(socket().parent_path().c_str(), 65534, 65534), 0);
    EXPECT_THAT(complaintAbout(socket()),
                HasSubstr(": its directory belongs to user 65534, not to user 0"));
}

TEST_F(InjectSocketTest, CannotBeInADirectoryBehindALink) {
    fs::create_directory(directory() / "elsewhere");
    fs::create_directory_symlink("elsewhere", socket().parent_path());
    EXPECT_THAT(complaintAbout(socket()), HasSubstr(": its directory is a link"));
}

TEST_F(InjectSocketTest, StaysIfItIsAnotherThanTheDaemonMade) {
    startDaemon();
    fs::remove(socket());
    const int other = bindSocket();
    EXPECT_EQ(m_daemon->terminate(), 0);
    EXPECT_TRUE(fs::exists(socket()));
    close(other);
}

// Simulates a first daemon that has bound the socket but does not listen yet.
TEST_F(InjectSocketTest, LeavesTheOneOfADaemonThatIsStartingAlone) {
    makeDirectory(0700);
    const int lock =
        open((socket().string() + ".lock").c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600);
    ASSERT_EQ(flock(lock, LOCK_EX), 0);
    const int other = bindSocket();
    EXPECT_THAT(complaintAbout(socket()),
                HasSubstr(socket().string() + ": another process listens there"));
    EXPECT_EQ(listen(other, 1), 0);
    close(connectPeer());
    close(other);
    close(lock);
}

TEST_F(InjectSocketTest, GoesToOneOfTwoDaemonsThatStartAtOnce) {
    makeDirectory(0700);
    close(bindSocket());  // as a killed daemon leaves it
    ChildProcess first(secondDaemon(socket()));
    ChildProcess second(secondDaemon(socket()));
    ASSERT_TRUE(first.waitForLine("loadPlugins"));
    ASSERT_TRUE(second.waitForLine("loadPlugins"));
    EXPECT_EQ(tool({"emit", "bt-adapter-state-changed"}).status, 0);
    EXPECT_EQ(first.terminate(), 0);
    EXPECT_EQ(second.terminate(), 0);
    const auto complains = [](const ChildProcess& daemon) {
        return daemon.errors().find(": another process listens there") != std::string::npos;
    };
    EXPECT_NE(complains(first), complains(second));
}

TEST_F(InjectSocketTest, ToolRefusesTheProcessOfAnotherUser) {
    if (geteuid() != 0) {
        GTEST_SKIP() << "only root can become another user";
    }
    makeDirectory(0755);
    const int other = bindSocket();
    ASSERT_EQ(seteuid(65534), 0);
    EXPECT_EQ(listen(other, 1), 0);
    ASSERT_EQ(seteuid(0), 0);
    const auto result = tool({"emit", "bt-adapter-state-changed"});
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.errors, "corvane: " + socket().string() +
                                 " belongs to a process of user 65534; corvane connects only to a "
                                 "daemon of user 0\n");
    close(other);
}

TEST_F(InjectSocketTest, IsNotThereUnlessAskedFor) {
    auto options = secondDaemon("");
    ChildProcess second(options);
    ASSERT_TRUE(second.waitForLine("init bluetooth"));
    EXPECT_EQ(second.terminate(), 0);
    EXPECT_THAT(second.errors(), testing::Not(HasSubstr("INJECT")));
}

TEST_F(InjectSocketTest, TellsWhenThereIsNoSubscriber) {
    ChildProcess second(secondDaemon(socket()));
    ASSERT_TRUE(second.waitForLine("init bluetooth"));
    ASSERT_TRUE(second.waitForLine("loadPlugins"));
    const auto result = tool({"emit", "bt-adapter-state-changed"});
    EXPECT_EQ(result.status, 0) << result.errors;
    EXPECT_EQ(result.output, "bt-adapter-state-changed: no plugin has subscribed\n");
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
