// What one peer, or many, can take of the daemon.
#include "DBusWire.h"
#include "HostFixture.h"
#include "InjectLimits.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

namespace {

namespace fs = std::filesystem;
namespace limits = corvane::host::limits;
using testing::HasSubstr;

class InjectLimitsTest : public HostFixture {
protected:
    ~InjectLimitsTest() override { disconnectAll(); }

    void connectPeers(std::size_t count) {
        while (m_peers.size() < count) {
            m_peers.push_back(connectPeer());
        }
    }

    void disconnectAll() {
        for (const int peer : m_peers) {
            close(peer);
        }
        m_peers.clear();
    }

    // Leaves the daemon so many numbers for further descriptors.
    void leaveDescriptors(int more) const {
        const auto open = fs::path("/proc") / std::to_string(m_daemon->id()) / "fd";
        rlim_t most = 0;
        for (; more > 0; ++most) {
            more -= fs::is_symlink(open / std::to_string(most)) ? 0 : 1;
        }
        const rlimit limit{most, most};
        ASSERT_EQ(prlimit(m_daemon->id(), RLIMIT_NOFILE, &limit, nullptr), 0);
    }

    // A peer that has sent some bytes.
    int peerThatSent(const std::string& bytes) {
        const int peer = m_peers.emplace_back(connectPeer());
        const timeval limit{20, 0};
        setsockopt(peer, SOL_SOCKET, SO_RCVTIMEO, &limit, sizeof limit);
        EXPECT_EQ(send(peer, bytes.data(), bytes.size(), MSG_NOSIGNAL),
                  static_cast<ssize_t>(bytes.size()));
        return peer;
    }

    // What the daemon sends a peer before it ends the connection.
    static std::string receiveAll(int peer) {
        std::string received;
        std::array<char, 4096> buffer{};
        ssize_t size = 0;
        while ((size = recv(peer, buffer.data(), buffer.size(), 0)) > 0) {
            received.append(buffer.data(), static_cast<std::size_t>(size));
        }
        EXPECT_TRUE(size == 0 || errno == ECONNRESET) << "the connection doesn't end";
        return received;
    }

    // An event whose message has so many bytes.
    static std::string renaming(std::size_t size) {
        const auto empty = dbusCall(1, "BtAdapterNameChanged", "s", std::string(5, '\0'));
        const auto length = static_cast<std::uint32_t>(size - empty.size());
        std::string body(reinterpret_cast<const char*>(&length), sizeof length);
        body.append(length, 'x');
        return dbusCall(1, "BtAdapterNameChanged", "s", body + '\0');
    }

    std::vector<int> m_peers;
};

TEST_F(InjectLimitsTest, RefusesPeersBeyondTheMostUntilOneHasGone) {
    startDaemon();
    connectPeers(limits::mostPeers);
    for (int attempt = 0; attempt < 2; ++attempt) {
        const auto refused = tool({"emit", "bt-adapter-state-changed"});
        EXPECT_EQ(refused.status, 1);
        EXPECT_EQ(refused.errors,
                  "corvane: the daemon on " + socket().string() +
                      " refused the connection: it serves at most 64 peers at a time\n");
    }
    const std::string line = "INJECT: a peer is refused: 64 peers are served already";
    nextLine(line);
    disconnectAll();
    expectServedAgain();
    EXPECT_EQ(m_daemon->terminate(), 0);
    EXPECT_EQ(m_daemon->errors().find(line), m_daemon->errors().rfind(line));
}

TEST_F(InjectLimitsTest, SurvivesRunningOutOfDescriptors) {
    startDaemon();
    leaveDescriptors(9);
    connectPeers(20);
    EXPECT_THAT(nextLine("INJECT: a peer is refused: "), HasSubstr("Too many open files"));
    disconnectAll();
    expectServedAgain();
}

TEST_F(InjectLimitsTest, TakesAMessageOfTheGreatestSize) {
    startDaemon();
    const int peer = peerThatSent(dbusGreeting() + renaming(limits::mostMessageBytes));
    shutdown(peer, SHUT_WR);
    const auto answers = dbusMessages(receiveAll(peer));
    ASSERT_TRUE(answers && answers->size() == 1);
    EXPECT_EQ(answers->front().type, DBusMessage::Return);
    EXPECT_EQ(nextEvent("bt-adapter-name-changed").substr(0, 8), "name=\"xx");
}

TEST_F(InjectLimitsTest, DisconnectsAPeerThatAnnouncesALongerMessageBeforeItIsSent) {
    startDaemon();
    const auto message = renaming(limits::mostMessageBytes + 1);
    const int peer = peerThatSent(dbusGreeting() + message.substr(0, 100));
    EXPECT_THAT(receiveAll(peer), testing::StartsWith("OK "));
    nextLine("INJECT: a peer is disconnected: its message is broken or has more than 262144 bytes");
    expectServedAgain();
}

TEST_F(InjectLimitsTest, ToolSaysHowLongAMessageMayBe) {
    startDaemon();
    const auto scenario = directory() / "scenario";
    std::ofstream(scenario) << "emit bt-adapter-name-changed name=" << std::string(300000, 'x')
                            << '\n';
    const auto result = tool({"play", scenario});
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.errors,
              "corvane: the daemon has ended the connection: it ends itself, or the message has "
              "more than 262144 bytes\n");
    expectServedAgain();
}

TEST_F(InjectLimitsTest, RefusesToPassDescriptors) {
    startDaemon();
    auto greeting = dbusGreeting();
    greeting.insert(greeting.find("BEGIN"), "NEGOTIATE_UNIX_FD\r\n");
    const int peer = peerThatSent(greeting);
    shutdown(peer, SHUT_WR);
    EXPECT_THAT(receiveAll(peer), testing::EndsWith("\r\nERROR\r\n"));
}

}  // namespace
