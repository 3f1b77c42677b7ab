// Compares the daemon's complete log with a file in the folder transcripts, which has the format of
// Log::transcript. All plugins are without faults here; PluginFaultTest covers the others.
#include <gtest/gtest.h>

#include <string>

#include "tests/support/process/DaemonLog.h"
#include "tests/support/process/Sandbox.h"
#include "tests/support/process/Transcript.h"

namespace {

class DaemonTranscriptTest : public testing::Test {
protected:
    void expectLog(const Outcome& outcome, const std::string& name, int status = 0) {
        expectTranscript(TRANSCRIPT_DIRECTORY, name, outcome.log.transcript());
        EXPECT_EQ(outcome.status, status);
        EXPECT_EQ(m_sandbox.daemon().output(), "");
    }

    Sandbox m_sandbox;
};

TEST_F(DaemonTranscriptTest, ALifeWithoutPlugins) {
    expectLog(m_sandbox.startAndTerminate(), "no_plugins");
}

TEST_F(DaemonTranscriptTest, ALifeWithOnePlugin) {
    m_sandbox.addPlugin("libfoo.so");
    expectLog(m_sandbox.startAndTerminate(), "one_plugin");
}

TEST_F(DaemonTranscriptTest, AMainLoopThatEndsAtOnce) {
    m_sandbox.addPlugin("libfoo.so", "quits_main_loop");
    expectLog(m_sandbox.runToItsEnd(), "main_loop_ends_at_once");
}

TEST_F(DaemonTranscriptTest, AMainLoopLibraryThatFails) {
    m_sandbox.addPlugin("libfoo.so");
    m_sandbox.failPlatformCalls("ecore_init");
    expectLog(m_sandbox.runToItsEnd(), "ecore_init_fails", 255);
}

TEST_F(DaemonTranscriptTest, OneEventForOneSubscriber) {
    m_sandbox.addPlugin("libfoo.so", "subscriber");
    m_sandbox.start();
    m_sandbox.emit({"bt-adapter-state-changed", "state=off"});
    expectLog(m_sandbox.terminate(), "one_event");
}

}  // namespace
