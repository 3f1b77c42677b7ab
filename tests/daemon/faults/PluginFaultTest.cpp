// Checks the daemon's exit status and complete log for each plugin fault. The log is compared with
// a transcript, without times, threads, source lines and pointers.
#include <gtest/gtest.h>

#include <string>

#include "tests/daemon/faults/PluginFaults.h"
#include "tests/support/process/Transcript.h"

namespace {

class PluginFaultTest : public testing::TestWithParam<PluginFault> {
protected:
    PluginFaultTest() { m_sandbox.preload(SORTING_LIBRARY); }

    // Removes the program's path, with which the dynamic loader begins its messages.
    static std::string withoutPath(std::string transcript) {
        const std::string daemon = DAEMON;
        for (std::size_t at; (at = transcript.find(daemon)) != std::string::npos;) {
            transcript.replace(at, daemon.size(), "corvaned");
        }
        return transcript;
    }

    Sandbox m_sandbox;
};

TEST_P(PluginFaultTest, EndsAsItShouldWithEveryLineInTheLog) {
    GetParam().install(m_sandbox);
    const Outcome outcome = GetParam().run(m_sandbox);
    const auto& log = outcome.log;
    expectTranscript(
        TRANSCRIPT_DIRECTORY,
        GetParam().transcript.empty() ? GetParam().name : GetParam().transcript,
        withoutPath(GetParam().byThread ? log.transcriptByThread() : log.transcript()));
    EXPECT_EQ(outcome.status, GetParam().status);
    EXPECT_EQ(m_sandbox.daemon().output(), "");
}

INSTANTIATE_TEST_SUITE_P(Plugins, PluginFaultTest, testing::ValuesIn(pluginFaults()),
                         [](const auto& tested) { return tested.param.name; });

}  // namespace
