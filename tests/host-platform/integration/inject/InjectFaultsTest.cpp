// Tests requests with random values, and requests of another user.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>
#include <random>
#include <stdexcept>
#include <string>

#include "tests/host-platform/integration/inject/RandomValues.h"
#include "tests/support/process/HostFixture.h"
#include "tools/corvane/events/InjectClient.h"

namespace {

namespace fs = std::filesystem;
using corvane::host::allEvents;
using corvane::host::findEvent;
using corvane::host::Values;
using corvane::tool::InjectClient;

class InjectFaultsTest : public HostFixture, public testing::WithParamInterface<unsigned> {
protected:
    int lines() const {
        const auto log = m_daemon->errors();
        int count = 0;
        for (auto place = log.find(" EVENT_LOG: "); place != std::string::npos;
             place = log.find(" EVENT_LOG: ", place + 1)) {
            ++count;
        }
        return count;
    }
};

TEST_P(InjectFaultsTest, RandomRequestsAreDeliveredOrRefused) {
    startDaemon(EVENT_LOG_PLUGIN,
                withSettings("[inject]\nthreads = " + std::to_string(GetParam()) + '\n'));
    const int before = lines();
    InjectClient daemon(socket());
    std::mt19937 random(GetParam());
    int delivered = 0;
    int refused = 0;
    for (int i = 0; i < 1000; ++i) {
        const auto& event = allEvents()[random() % allEvents().size()];
        const auto values = randomValues(event, random);
        try {
            delivered += static_cast<int>(daemon.emit(event, values));
        } catch (const std::runtime_error&) {
            ++refused;
        }
    }
    const auto& last = *findEvent("bt-adapter-name-changed");
    Values name(last);
    name.set(last.arguments[0], std::string("the last one"));
    EXPECT_EQ(daemon.emit(last, name), 1u);
    nextLine("name=\"the last one\"");
    EXPECT_EQ(lines() - before, delivered + 1);
    EXPECT_EQ(delivered + refused, 1000);
    EXPECT_GT(delivered, 300);
    EXPECT_GT(refused, 100);
}

INSTANTIATE_TEST_SUITE_P(Threads, InjectFaultsTest, testing::Values(0u, 4u));

using InjectUserTest = HostFixture;

// Another user is refused even if the file permissions allow the access.
TEST_F(InjectUserTest, AnotherUserIsSentAway) {
    if (geteuid() != 0) {
        GTEST_SKIP() << "only root can become another user";
    }
    startDaemon();
    fs::permissions(directory(), fs::perms(0755));
    fs::permissions(socket().parent_path(), fs::perms(0755));
    fs::permissions(socket(), fs::perms(0666));
    const std::vector<std::string> call{"busctl",
                                        "--address=unix:path=" + socket().string(),
                                        "call",
                                        "org.corvane.Inject",
                                        "/org/corvane/Inject",
                                        "org.corvane.Inject1",
                                        "BtAdapterNameChanged",
                                        "s",
                                        "intruder"};
    auto asAnother = call;
    asAnother.insert(asAnother.begin(), {"setpriv", "--reuid=65534", "--clear-groups"});
    EXPECT_NE(runAnyhow(asAnother).status, 0);
    EXPECT_EQ(runAnyhow(call).status, 0);
    nextEvent("bt-adapter-name-changed");
    EXPECT_EQ(m_daemon->errors().find("intruder"), m_daemon->errors().rfind("intruder"));
}

}  // namespace
