// Whatever is wrong with a plugin, the daemon ends as it should, and its complete log is what the
// transcript says: every line, but for times, threads, source lines and pointers.
#include <gtest/gtest.h>

#include <fstream>
#include <sstream>
#include <string>

#include "tests/daemon/faults/PluginFaults.h"

namespace {

class PluginFaultTest : public testing::TestWithParam<PluginFault> {
protected:
    PluginFaultTest() { m_sandbox.preload(SORTING_LIBRARY); }

    static std::string path() {
        const auto& fault = GetParam();
        const auto& name = fault.transcript.empty() ? fault.name : fault.transcript;
        return std::string(TRANSCRIPT_DIRECTORY) + '/' + name + ".txt";
    }
    static std::string expected() {
        std::ifstream file(path());
        EXPECT_TRUE(file) << path();
        std::ostringstream text;
        text << file.rdbuf();
        return text.str();
    }
    // The loader puts the program's path in front of its complaints.
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
    const auto transcript =
        withoutPath(GetParam().byThread ? log.transcriptByThread() : log.transcript());
    EXPECT_EQ(transcript, expected());
    EXPECT_EQ(outcome.status, GetParam().status);
    EXPECT_EQ(m_sandbox.daemon().output(), "");
}

INSTANTIATE_TEST_SUITE_P(Plugins, PluginFaultTest, testing::ValuesIn(pluginFaults()),
                         [](const auto& tested) { return tested.param.name; });

}  // namespace
