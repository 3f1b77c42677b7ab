// Signals at any moment from the daemon's start to its end. The daemon stops after a chosen log
// record, receives the signal there, and continues. The environment variable CORVANE_FAULT_MOMENTS
// sets the number of records.
#include <gtest/gtest.h>

#include <algorithm>
#include <csignal>
#include <string>
#include <vector>

#include "tests/daemon/faults/Figures.h"
#include "tests/daemon/faults/PipeGate.h"
#include "tests/support/process/DaemonLog.h"
#include "tests/support/process/Sandbox.h"

namespace {

class DeviceFaultSignalTest : public testing::Test {
protected:
    DeviceFaultSignalTest() : m_gate(m_sandbox) {
        m_sandbox.preload(HOLDING_LIBRARY);
        m_sandbox.addPlugin("libbleapp.so", "subscriber");
        m_sandbox.addPlugin("libfoo.so", "leaves_subscriptions");
        m_ordinary = m_sandbox.startAndTerminate().log;
        m_transcript = m_ordinary.transcript();
        m_recordsToLoop = static_cast<int>(m_ordinary.upTo("ecore_main_loop_begin").lines().size());
    }

    int records() const { return static_cast<int>(m_ordinary.lines().size()); }
    // Returns the numbers of `count` log records, evenly spaced from the first to the last.
    std::vector<int> moments(int count) const {
        count = std::min(count, records());
        std::vector<int> chosen;
        for (int i = 0; i < count; ++i) {
            chosen.push_back(1 + i * (records() - 1) / (count - 1));
        }
        return chosen;
    }
    // Starts the daemon and waits until it stops after the record. For a record of the shutdown,
    // sends SIGTERM first.
    void runUpTo(int record) {
        m_sandbox.setEnvironment("HOLD_AT", std::to_string(record));
        m_sandbox.launch();
        if (record > m_recordsToLoop) {
            ASSERT_TRUE(m_sandbox.daemon().waitForLine("ecore_main_loop_begin"));
            m_sandbox.daemon().sendSignal(SIGTERM);
        }
        ASSERT_TRUE(m_sandbox.daemon().waitForLine("held")) << m_sandbox.log().transcript();
    }
    // Returns the transcript up to and including the record.
    std::string transcriptUpTo(int record) const {
        std::size_t end = 0;
        for (int i = 0; i < record; ++i) {
            end = m_transcript.find('\n', end) + 1;
        }
        return m_transcript.substr(0, end);
    }
    int recordOf(const std::string& text) const {
        return static_cast<int>(m_ordinary.upTo(text).lines().size());
    }

    Sandbox m_sandbox;
    PipeGate m_gate;
    Log m_ordinary;
    std::string m_transcript;
    int m_recordsToLoop = 0;
};

// From ecore_init on, the main-loop library handles the signal: the daemon completes its start and
// then shuts down, or continues its shutdown. Before ecore_init, the signal's default action ends
// the process.
TEST_F(DeviceFaultSignalTest, SigtermEndsTheDaemonInOrderFromEcoreInitOn) {
    const int lastUnhandled = recordOf("ecore_init");
    Longest longest;
    int byDefault = 0;
    for (const int record : moments(lengthOf("CORVANE_FAULT_MOMENTS", 20))) {
        SCOPED_TRACE(record);
        runUpTo(record);
        m_sandbox.daemon().sendSignal(SIGTERM);
        const auto start = Longest::Clock::now();
        // A daemon that the signal has ended reads nothing: the next daemon would read the byte.
        if (record > lastUnhandled) {
            m_gate.letPass(1);
        }
        const Outcome outcome = m_sandbox.wait();
        EXPECT_LT(Longest::Clock::now() - start, HANG);
        longest.add(start);
        if (record > lastUnhandled) {
            EXPECT_EQ(outcome.status, 0);
            EXPECT_EQ(outcome.log.transcript(), m_transcript);
        } else {
            ++byDefault;
            EXPECT_EQ(outcome.status, -SIGTERM);
            EXPECT_EQ(outcome.log.transcript(), transcriptUpTo(record));
        }
    }
    EXPECT_GT(byDefault, 0);
    EXPECT_LT(byDefault, longest.runs());
    printFigure("SIGTERM behind " + std::to_string(longest.runs()) + " of the " +
                std::to_string(records()) +
                " log records of a life: " + std::to_string(longest.runs() - byDefault) +
                " ended in order with the complete log, " + std::to_string(byDefault) +
                " before ecore_init by the signal; longest end " + longest.text());
}

TEST_F(DeviceFaultSignalTest, ManySigtermsWhileAPluginGoesDownAreOne) {
    runUpTo(recordOf("start deinit func"));
    for (int i = 0; i < 100; ++i) {
        m_sandbox.daemon().sendSignal(SIGTERM);
    }
    m_gate.letPass(1);
    const Outcome outcome = m_sandbox.wait();
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.log.transcript(), m_transcript);
}

// The files that a killed daemon leaves, such as its socket, do not affect the next daemon.
TEST_F(DeviceFaultSignalTest, AfterSigkillAtAnyMomentTheDaemonStartsAgain) {
    Longest longest;
    for (const int record : moments(lengthOf("CORVANE_FAULT_MOMENTS", 20) / 2)) {
        SCOPED_TRACE(record);
        runUpTo(record);
        m_sandbox.daemon().sendSignal(SIGKILL);
        EXPECT_EQ(m_sandbox.wait().status, -SIGKILL);
        m_sandbox.setEnvironment("HOLD_AT", "0");
        const auto start = Longest::Clock::now();
        m_sandbox.start();
        EXPECT_LT(Longest::Clock::now() - start, HANG);
        longest.add(start);
        EXPECT_EQ(m_sandbox.emit({"bt-adapter-name-changed"}),
                  "bt-adapter-name-changed: no plugin has subscribed\n");
        const Outcome outcome = m_sandbox.terminate();
        EXPECT_EQ(outcome.status, 0);
        EXPECT_EQ(outcome.log.transcript(), m_transcript);
    }
    printFigure("SIGKILL behind " + std::to_string(longest.runs()) +
                " log records and start again: the socket answers, the log is that of a first "
                "life; longest start " +
                longest.text());
}

}  // namespace
