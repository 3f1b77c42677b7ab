// Tests the delivery of injected events by threads of the platform.
#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/stat.h>
#include <unistd.h>

#include <fstream>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include "tests/support/process/HostFixture.h"

namespace {

using testing::HasSubstr;

class InjectThreadsTest : public HostFixture {
protected:
    void startWithThreads(unsigned count, const std::string& plugin = EVENT_LOG_PLUGIN) {
        auto environment = withSettings("[inject]\nthreads = " + std::to_string(count) + '\n');
        environment["CORVANE_TEST_FIFO"] = fifo();
        startDaemon(plugin, environment);
    }

    std::string fifo() const { return directory() / "fifo"; }

    // Emits an event with this name and returns the id of the thread that delivers it.
    std::string threadOf(const std::string& name) {
        EXPECT_EQ(tool({"emit", "bt-adapter-name-changed", "name=" + name}).output,
                  "bt-adapter-name-changed: delivered to 1 callback\n");
        const auto line = nextLine("EVENT_LOG: bt-adapter-name-changed name=\"" + name + '"');
        const auto begin = line.find(' ') + 1;
        return line.substr(begin, line.find(' ', begin) - begin);
    }
};

TEST_F(InjectThreadsTest, TakeTurns) {
    startWithThreads(2);
    const auto first = threadOf("a");
    const auto second = threadOf("b");
    const auto main = std::to_string(m_daemon->id());
    EXPECT_EQ((std::set<std::string>{first, second, main}).size(), 3u);
    EXPECT_EQ(threadOf("c"), first);
    EXPECT_EQ(threadOf("d"), second);
}

TEST_F(InjectThreadsTest, AreNotThereUnlessAskedFor) {
    startWithThreads(0);
    EXPECT_EQ(threadOf("a"), std::to_string(m_daemon->id()));
}

TEST_F(InjectThreadsTest, NameWhatTheyRefuseAndWhenThereIsNoSubscriber) {
    startWithThreads(8, THROWING_PLUGIN);
    EXPECT_EQ(tool({"emit", "bt-avrcp-volume-notify"}).output,
              "bt-avrcp-volume-notify: no plugin has subscribed\n");
    const auto refused = tool({"emit", "bt-device-service-searched", "service_count=3"});
    EXPECT_EQ(refused.status, 1);
    EXPECT_THAT(refused.errors, HasSubstr("service_count can't be 3 with 2 in service_uuid"));
}

TEST_F(InjectThreadsTest, LeaveTheMainLoopFreeAndOutliveTheirCaller) {
    ASSERT_EQ(mkfifo(fifo().c_str(), 0600), 0);
    startWithThreads(2, DIRECTED_PLUGIN);
    const auto caller = startTool({"emit", "bt-adapter-name-changed", "name=wait"});
    nextLine("DIRECTED: waiting");
    EXPECT_EQ(tool({"emit", "bt-avrcp-volume-notify"}).status, 0);
    caller->sendSignal(SIGKILL);
    EXPECT_EQ(caller->wait(), -SIGKILL);
    close(open(fifo().c_str(), O_WRONLY));
    nextLine("DIRECTED: done");
    EXPECT_EQ(tool({"emit", "bt-adapter-name-changed"}).status, 0);
}

TEST_F(InjectThreadsTest, ServeManyPeersAtOnce) {
    startWithThreads(8);
    const auto scenario = directory() / "scenario";
    std::ofstream(scenario) << "repeat 100\nemit bt-adapter-name-changed\nend\n";
    const auto watch = startTool({"watch"});
    ASSERT_TRUE(watch->waitForLine("set bt-adapter-name-changed"));
    std::vector<std::unique_ptr<ChildProcess>> players;
    for (int i = 0; i < 4; ++i) {
        players.push_back(startTool({"play", scenario}));
    }
    for (const auto& player : players) {
        EXPECT_EQ(player->wait(), 0) << player->errors();
    }
    for (int i = 0; i < 400; ++i) {
        ASSERT_TRUE(watch->waitForLine("delivered bt-adapter-name-changed: 1 callback")) << i;
        ASSERT_EQ(nextEvent("bt-adapter-name-changed"), "name=\"Living room TV\"") << i;
    }
}

TEST_F(InjectThreadsTest, EndTheProcessWhenACallbackThrows) {
    startWithThreads(1, DIRECTED_PLUGIN);
    const auto result = tool({"emit", "bt-adapter-name-changed", "name=throw"});
    EXPECT_EQ(result.status, 1);
    nextLine(
        "INJECT: bt-adapter-name-changed: its callback threw on a thread of the platform, "
        "which ends the process: thrown by a plugin");
    EXPECT_EQ(m_daemon->wait(), -SIGABRT);
    m_daemon.reset();
}

}  // namespace
