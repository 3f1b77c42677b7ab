// Tests the limits on the resources of the daemon that peers can use.
#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "platform/host/inject/InjectLimits.h"
#include "tests/support/DBusWire.h"
#include "tests/support/process/HostFixture.h"

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

    // Lowers the daemon's limit, so that it can open only `more` further descriptors.
    void leaveDescriptors(int more) const {
        const auto open = fs::path("/proc") / std::to_string(m_daemon->id()) / "fd";
        rlim_t most = 0;
        for (; more > 0; ++most) {
            more -= fs::is_symlink(open / std::to_string(most)) ? 0 : 1;
        }
        const rlimit limit{most, most};
        ASSERT_EQ(prlimit(m_daemon->id(), RLIMIT_NOFILE, &limit, nullptr), 0);
    }

    // Connects a peer that sends `bytes`, and returns its socket.
    int peerThatSent(const std::string& bytes) {
        const int peer = m_peers.emplace_back(connectPeer());
        const timeval limit{20, 0};
        setsockopt(peer, SOL_SOCKET, SO_RCVTIMEO, &limit, sizeof limit);
        setsockopt(peer, SOL_SOCKET, SO_SNDTIMEO, &limit, sizeof limit);
        EXPECT_EQ(send(peer, bytes.data(), bytes.size(), MSG_NOSIGNAL),
                  static_cast<ssize_t>(bytes.size()));
        return peer;
    }

    // Sends `bytes` repeatedly, far more than the socket buffers hold, without reading. Expects the
    // daemon to end the connection.
    static void expectEndOfFlood(int peer, const std::string& bytes) {
        std::size_t sent = 0;
        ssize_t size = 0;
        while (sent < 16'000'000 &&
               (size = send(peer, bytes.data(), bytes.size(), MSG_NOSIGNAL)) > 0) {
            sent += static_cast<std::size_t>(size);
        }
        EXPECT_TRUE(size < 0 && (errno == EPIPE || errno == ECONNRESET))
            << "the connection doesn't end";
    }

    // Returns everything that the daemon sends until it ends the connection.
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

    // Waits until the peer has received at least `count` messages and returns all of them.
    // `received` keeps the bytes for the next call.
    static std::vector<DBusMessage> receive(int peer, std::size_t count, std::string& received) {
        std::array<char, 4096> buffer{};
        auto messages = dbusMessages(received);
        while (!messages || messages->size() < count) {
            const ssize_t size = recv(peer, buffer.data(), buffer.size(), 0);
            if (size <= 0) {
                ADD_FAILURE() << "nothing comes";
                return {};
            }
            received.append(buffer.data(), static_cast<std::size_t>(size));
            messages = dbusMessages(received);
        }
        return *messages;
    }

    // Returns a message of `size` bytes that injects bt-adapter-name-changed.
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
    connectPeers(limits::MOST_PEERS);
    for (int attempt = 0; attempt < 2; ++attempt) {
        const auto refused = tool({"emit", "bt-adapter-state-changed"});
        EXPECT_EQ(refused.status, 1);
        EXPECT_EQ(refused.errors,
                  "corvane: the daemon on " + socket().string() +
                      " refused the connection: it serves at most 64 connections at a time\n");
    }
    const std::string line = "INJECT: a peer is refused: 64 peers are served already";
    nextLine(line);
    disconnectAll();
    expectServedAgain();
    EXPECT_EQ(m_daemon->terminate(), 0);
    EXPECT_EQ(m_daemon->errors().find(line), m_daemon->errors().rfind(line));
}

class InjectDescriptorsTest : public InjectLimitsTest, public testing::WithParamInterface<int> {};

TEST_P(InjectDescriptorsTest, RunOutAndThePeerIsRefused) {
    startDaemon();
    leaveDescriptors(GetParam());
    connectPeers(20);
    EXPECT_NE(nextLine("INJECT: a peer is refused: there is no descriptor or no memory for it"),
              "");
    // The peer is refused at once, not when another descriptor becomes free.
    const timeval limit{1, 0};
    setsockopt(m_peers.back(), SOL_SOCKET, SO_RCVTIMEO, &limit, sizeof limit);
    EXPECT_EQ(receiveAll(m_peers.back()), "");
    disconnectAll();
    expectServedAgain();
}

// A peer needs four descriptors. Each of these limits makes a different one of the four fail.
INSTANTIATE_TEST_SUITE_P(Left, InjectDescriptorsTest, testing::Range(8, 12));

TEST_F(InjectLimitsTest, TakesAMessageOfTheGreatestSize) {
    startDaemon();
    const int peer = peerThatSent(dbusGreeting() + renaming(limits::MOST_MESSAGE_BYTES));
    shutdown(peer, SHUT_WR);
    const auto answers = dbusMessages(receiveAll(peer));
    ASSERT_TRUE(answers && answers->size() == 1);
    EXPECT_EQ(answers->front().type, DBusMessage::Return);
    EXPECT_EQ(nextEvent("bt-adapter-name-changed").substr(0, 8), "name=\"xx");
}

TEST_F(InjectLimitsTest, DisconnectsAPeerThatAnnouncesALongerMessageBeforeItIsSent) {
    startDaemon();
    const auto message = renaming(limits::MOST_MESSAGE_BYTES + 1);
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
              "corvane: the daemon closed the connection: it has ended, or the message has "
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

TEST_F(InjectLimitsTest, DisconnectsAPeerThatDoesNotReadItsAnswers) {
    startDaemon(THROWING_PLUGIN);
    const int peer = peerThatSent(dbusGreeting());
    std::string calls;
    for (std::uint32_t serial = 1; serial <= 100; ++serial) {
        calls += dbusCall(serial, "BtAvrcpVolumeNotify", "", "");
    }
    expectEndOfFlood(peer, calls);
    nextLine("INJECT: a peer that doesn't read its answers is disconnected");
    EXPECT_EQ(tool({"emit", "bt-avrcp-volume-notify"}).status, 0);
}

TEST_F(InjectLimitsTest, RefusesAnEventWhenTooManyWaitForItsThread) {
    const std::string fifo = directory() / "fifo";
    ASSERT_EQ(mkfifo(fifo.c_str(), 0600), 0);
    auto environment = withSettings("[inject]\nthreads = 1\n");
    environment["CORVANE_TEST_FIFO"] = fifo;
    startDaemon(DIRECTED_PLUGIN, environment);
    const std::string name("\4\0\0\0wait\0", 9);
    const int peer = peerThatSent(dbusGreeting() + dbusCall(1, "BtAdapterNameChanged", "s", name));
    nextLine("DIRECTED: waiting");
    std::string calls;
    constexpr std::uint32_t last = limits::MOST_WAITING_EVENTS + 2;
    for (std::uint32_t serial = 2; serial <= last; ++serial) {
        calls += dbusCall(serial, "BtAvrcpVolumeNotify", "", "");
    }
    ASSERT_GT(send(peer, calls.data(), calls.size(), MSG_NOSIGNAL), 0);
    std::string received;
    const auto refused = receive(peer, 1, received);
    ASSERT_EQ(refused.size(), 1U);
    EXPECT_EQ(refused[0].errorName, "org.freedesktop.DBus.Error.LimitsExceeded");
    EXPECT_THAT(refused[0].body, HasSubstr("64 events wait for their thread already"));
    EXPECT_EQ(refused[0].replySerial, last);
    close(open(fifo.c_str(), O_WRONLY));
    EXPECT_EQ(receive(peer, last, received).size(), last);
}

}  // namespace
