// Signals while several processes send events as fast as possible.
#include <gtest/gtest.h>

#include <csignal>
#include <fstream>
#include <memory>
#include <string>
#include <vector>

#include "tests/daemon/faults/Figures.h"
#include "tests/support/process/ChildProcess.h"
#include "tests/support/process/Sandbox.h"

namespace {

constexpr int SENDERS = 3;

// The parameter is the number of the platform's delivery threads; 0 means the main loop delivers.
class DeviceFaultStormTest : public testing::TestWithParam<int> {
protected:
    void install(Sandbox& sandbox) const {
        sandbox.setSettings("[inject]\nthreads = " + std::to_string(GetParam()) +
                            "\n[callbacks]\nslow_ms = 0\n");
        sandbox.setEnvironment("CORVANE_LOG_LEVEL", "info");
        for (const char* name : {"liba.so", "libb.so", "libc.so"}) {
            sandbox.addPlugin(name, "counts_events");
        }
        std::ofstream(sandbox.directory() / "storm")
            << "repeat 1000000\nemit bt-adapter-state-changed state=on\nend\n";
    }
    // Starts the daemon and the senders, and waits until every plugin has received 100 events.
    void begin(Sandbox& sandbox) {
        sandbox.launch();
        ASSERT_TRUE(sandbox.daemon().waitForLine("ecore_main_loop_begin"));
        for (int i = 0; i < SENDERS; ++i) {
            m_senders.push_back(std::make_unique<ChildProcess>(
                ChildProcess::Options{.command = {CORVANE_COMMAND, "play", "storm"},
                                      .directory = sandbox.directory(),
                                      .environment = {{"CORVANE_INJECT_SOCKET", "inject"}}}));
        }
        for (int i = 0; i < 3; ++i) {
            ASSERT_TRUE(sandbox.daemon().waitForLine("a hundred events", HANG));
        }
    }
    // Expects that each sender notices the daemon's end and exits with status 1.
    void expectSendersEnd() {
        for (const auto& sender : m_senders) {
            EXPECT_EQ(sender->wait(), 1) << sender->errors();
        }
        m_senders.clear();
    }
    std::string who() const {
        return GetParam() == 0 ? "the main loop" : std::to_string(GetParam()) + " threads";
    }

    std::vector<std::unique_ptr<ChildProcess>> m_senders;
};

TEST_P(DeviceFaultStormTest, SigtermEndsTheDaemonInOrder) {
    Longest longest;
    for (int run = 0; run < lengthOf("CORVANE_FAULT_STORMS", 3); ++run) {
        Sandbox sandbox;
        install(sandbox);
        begin(sandbox);
        const auto start = Longest::Clock::now();
        const Outcome outcome = sandbox.terminate();
        EXPECT_LT(Longest::Clock::now() - start, HANG);
        longest.add(start);
        ASSERT_EQ(outcome.status, 0) << outcome.log.ofTags({"", "INJECT"}).texts();
        EXPECT_EQ(outcome.log.count(": deinit"), 3U);
        EXPECT_EQ(outcome.log.count(": closed"), 3U);
        EXPECT_TRUE(outcome.log.from("deinit bluetooth").contains("ecore_shutdown"));
        EXPECT_TRUE(outcome.log.ofPriority("E").lines().empty())
            << outcome.log.ofPriority("E").texts();
        expectSendersEnd();
    }
    printFigure("SIGTERM in a storm of events delivered by " + who() +
                ": ended in order; longest end " + longest.text());
}

TEST_P(DeviceFaultStormTest, AfterSigkillTheDaemonStartsAgain) {
    Longest longest;
    for (int run = 0; run < lengthOf("CORVANE_FAULT_STORMS", 3); ++run) {
        Sandbox sandbox;
        install(sandbox);
        begin(sandbox);
        sandbox.daemon().sendSignal(SIGKILL);
        EXPECT_EQ(sandbox.wait().status, -SIGKILL);
        expectSendersEnd();
        const auto start = Longest::Clock::now();
        begin(sandbox);
        EXPECT_LT(Longest::Clock::now() - start, HANG);
        longest.add(start);
        EXPECT_EQ(sandbox.terminate().status, 0);
        expectSendersEnd();
    }
    printFigure("SIGKILL in a storm of events delivered by " + who() +
                ": the next daemon's plugins had a hundred events each after at most " +
                longest.text());
}

INSTANTIATE_TEST_SUITE_P(Threads, DeviceFaultStormTest, testing::Values(0, 3),
                         testing::PrintToStringParamName());

}  // namespace
