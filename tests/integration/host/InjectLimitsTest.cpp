// What one peer, or many, can take of the daemon.
#include "HostFixture.h"
#include "InjectLimits.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <unistd.h>

#include <cstddef>
#include <filesystem>
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

}  // namespace
