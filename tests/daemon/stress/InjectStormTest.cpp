// Injects ten thousand events per second into the real daemon. Several peers send them, several
// platform threads deliver them, and a plugin counts them.
#include <gtest/gtest.h>

#include <chrono>
#include <string>
#include <thread>
#include <vector>

#include "tests/support/process/ChildProcess.h"
#include "tests/support/process/DaemonDirectory.h"
#include "tools/corvane/events/InjectClient.h"

namespace {

using Clock = std::chrono::steady_clock;

constexpr int SENDERS = 4;
constexpr int EVENTS_PER_SECOND = 10000;
constexpr int EVENTS = EVENTS_PER_SECOND * STORM_SECONDS / SENDERS;  // per sender
constexpr auto PACE = std::chrono::nanoseconds(1'000'000'000LL * SENDERS / EVENTS_PER_SECOND);

class InjectStormTest : public testing::Test {
protected:
    InjectStormTest() {
        m_directory.addPlugin(COUNTING_PLUGIN);
        m_directory.setSettings("[inject]\nthreads = 4\n");
    }

    // Sends the events of one sender at PACE, or more slowly if the daemon can't keep up.
    void send(int sender) const {
        corvane::tool::InjectClient peer(m_directory.socket());
        const auto& event = *corvane::host::findEvent("bt-adapter-name-changed");
        corvane::host::Values values(event);
        const auto start = Clock::now();
        for (int i = 0; i < EVENTS; ++i) {
            values.set(event.arguments[0], std::to_string(sender) + ' ' + std::to_string(i));
            ASSERT_EQ(peer.emit(event, values), 1u);
            std::this_thread::sleep_until(start + i * PACE);
        }
    }

    DaemonDirectory m_directory;
};

TEST_F(InjectStormTest, EveryEventArrivesOnceAndInOrder) {
    ChildProcess daemon(m_directory.daemon());
    ASSERT_TRUE(daemon.waitForLine("end init func")) << daemon.errors();
    const auto start = Clock::now();
    std::vector<std::thread> running;
    for (int sender = 0; sender < SENDERS; ++sender) {
        running.emplace_back([this, sender] { send(sender); });
    }
    for (auto& thread : running) {
        thread.join();
    }
    const std::chrono::duration<double> time = Clock::now() - start;
    RecordProperty("EventsPerSecond", std::to_string(SENDERS * EVENTS / time.count()));
    EXPECT_EQ(daemon.terminate(), 0) << daemon.errors();
    EXPECT_TRUE(daemon.waitForLine("counted " + std::to_string(SENDERS * EVENTS) + ", misplaced 0"))
        << daemon.errors();
}

}  // namespace
