// Tests `corvane watch` with a running daemon.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <signal.h>

#include <algorithm>
#include <fstream>
#include <memory>
#include <nlohmann/json.hpp>
#include <string>

#include "tests/support/process/HostFixture.h"

namespace {

using Json = nlohmann::ordered_json;
using testing::HasSubstr;
using testing::SizeIs;

class WatchTest : public BluezFixture {
protected:
    void startWatch(const std::vector<std::string>& options = {}) {
        std::vector<std::string> words{"watch"};
        words.insert(words.end(), options.begin(), options.end());
        m_watch = startTool(words);
    }

    void rename(const std::string& name) {
        EXPECT_EQ(tool({"emit", "bt-adapter-name-changed", "name=" + name}).status, 0);
    }

    void expectLine(const std::string& line) {
        EXPECT_EQ(m_watch->waitForLine(""), line) << m_watch->errors();
    }

    std::unique_ptr<ChildProcess> m_watch;
};

TEST_F(WatchTest, ShowsWhatIsSetThenWhatHappens) {
    startDaemon(DIRECTED_PLUGIN);
    startWatch();
    expectLine("set bt-adapter-name-changed");
    rename("subscribe");
    expectLine("set sound-manager-speaker-changed");
    expectLine("delivered bt-adapter-name-changed: 1 callback");
    tool({"emit", "sound-manager-speaker-changed"});
    expectLine("delivered sound-manager-speaker-changed: 1 callback");
    rename("unsubscribe");
    expectLine("unset sound-manager-speaker-changed");
    expectLine("delivered bt-adapter-name-changed: 1 callback");
    tool({"emit", "sound-manager-speaker-changed"});
    expectLine("delivered sound-manager-speaker-changed: no plugin has subscribed");
}

TEST_F(WatchTest, WritesTheObjectOfTheListWithWhatHappened) {
    startDaemon(DIRECTED_PLUGIN);
    const auto list = Json::parse(tool({"list", "--json"}).output);
    const auto described = std::ranges::find(list, "bt-adapter-name-changed",
                                             [](const Json& event) { return event.at("name"); });
    ASSERT_NE(described, list.end());
    EXPECT_THAT((*described)["arguments"], SizeIs(1));
    startWatch({"--json"});
    Json set{{"change", "set"}};
    set.update(*described);
    expectLine(set.dump());
    rename("x");
    Json delivered{{"change", "delivered"}};
    delivered.update(*described);
    delivered["called"] = 1;
    expectLine(delivered.dump());
}

TEST_F(WatchTest, ShowsWhatIsDeliveredByThreads) {
    startDaemon(DIRECTED_PLUGIN, withSettings("[inject]\nthreads = 2\n"));
    startWatch();
    expectLine("set bt-adapter-name-changed");
    rename("subscribe");
    expectLine("set sound-manager-speaker-changed");
    expectLine("delivered bt-adapter-name-changed: 1 callback");
}

TEST_F(WatchTest, ShowsWhatComesFromBluez) {
    startBus();
    startBluez();
    startDaemon(DIRECTED_PLUGIN);
    startWatch();
    expectLine("set bt-adapter-name-changed");
    mock({"AddAdapter", "ss", "hci0", "desk"});
    EXPECT_TRUE(
        m_watch->waitForLine("delivered bt-adapter-state-changed: no plugin has subscribed"));
}

TEST_F(WatchTest, EndsInOrderOnCtrlC) {
    startDaemon(DIRECTED_PLUGIN);
    startWatch();
    expectLine("set bt-adapter-name-changed");
    m_watch->sendSignal(SIGINT);
    EXPECT_EQ(m_watch->wait(), 0);
    rename("x");
}

TEST_F(WatchTest, ShowsTheEndOfTheDaemon) {
    startDaemon(DIRECTED_PLUGIN);
    startWatch();
    expectLine("set bt-adapter-name-changed");
    EXPECT_EQ(m_daemon->terminate(), 0);
    EXPECT_TRUE(m_watch->waitForLine("unset bt-adapter-name-changed"));
    EXPECT_EQ(m_watch->wait(), 1);
    EXPECT_EQ(m_watch->errors(), "corvane: the daemon closed the connection\n");
}

TEST_F(WatchTest, DisconnectsAWatcherThatDoesNotRead) {
    startDaemon(THROWING_PLUGIN);
    startWatch();
    expectLine("set bt-adapter-state-changed");
    m_watch->sendSignal(SIGSTOP);
    // Causes far more events than the socket buffer holds.
    const auto scenario = directory() / "scenario";
    std::ofstream(scenario) << "repeat 40000\nemit bt-avrcp-volume-notify\nend\n";
    EXPECT_EQ(tool({"play", scenario}).status, 0);
    nextLine("INJECT: a watcher that doesn't read is disconnected");
    m_watch->sendSignal(SIGCONT);
    EXPECT_EQ(m_watch->wait(), 1);
}

}  // namespace
