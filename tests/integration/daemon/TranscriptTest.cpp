// The daemon's complete log, line by line, in the situations that matter. What is
// expected lies in the folder transcripts, in the form that Log::transcript gives.
#include <gtest/gtest.h>

#include <fstream>
#include <sstream>
#include <string>

#include "Log.h"
#include "Sandbox.h"

namespace {

class DaemonTranscriptTest : public testing::Test {
protected:
    static std::string expected(const std::string& name) {
        std::ifstream file(std::string(TRANSCRIPT_DIRECTORY) + '/' + name + ".txt");
        EXPECT_TRUE(file) << name;
        std::ostringstream text;
        text << file.rdbuf();
        return text.str();
    }
    void expectLog(const Outcome& outcome, const std::string& name, int status = 0) {
        EXPECT_EQ(outcome.log.transcript(), expected(name));
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

TEST_F(DaemonTranscriptTest, APluginWithoutADeinitEntry) {
    m_sandbox.addPlugin("libfoo.so", "no_deinit");
    expectLog(m_sandbox.startAndTerminate(), "no_deinit");
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

TEST_F(DaemonTranscriptTest, AFileThatIsNoLibrary) {
    std::ofstream(m_sandbox.plugins() / "libfoo.so") << "not a library\n";
    expectLog(m_sandbox.startAndTerminate(), "no_library");
}

TEST_F(DaemonTranscriptTest, ALibraryWithoutAnInitEntry) {
    m_sandbox.addPlugin("libfoo.so", "no_init");
    expectLog(m_sandbox.startAndTerminate(), "no_init");
}

TEST_F(DaemonTranscriptTest, AnInitEntryThatReturnsANegativeValue) {
    m_sandbox.addPlugin("libfoo.so", "init_returns_minus_3");
    expectLog(m_sandbox.startAndTerminate(), "init_returns_negative");
}

TEST_F(DaemonTranscriptTest, AnInitEntryThatThrows) {
    m_sandbox.addPlugin("libfoo.so", "init_throws_runtime_error");
    expectLog(m_sandbox.startAndTerminate(), "init_throws");
}

TEST_F(DaemonTranscriptTest, AnInitEntryThatSubscribesAndFails) {
    m_sandbox.addPlugin("libfoo.so", "subscribes_then_fails");
    expectLog(m_sandbox.startAndTerminate(), "subscribes_then_fails");
}

TEST_F(DaemonTranscriptTest, OneEventForOneSubscriber) {
    m_sandbox.addPlugin("libfoo.so", "subscriber");
    m_sandbox.start();
    m_sandbox.emit({"bt-adapter-state-changed", "state=off"});
    expectLog(m_sandbox.terminate(), "one_event");
}

TEST_F(DaemonTranscriptTest, ASubscriberThatUnsubscribesInItsCallback) {
    m_sandbox.addPlugin("libfoo.so", "subscribed_twice_unsubscribes_in_callback");
    m_sandbox.start();
    m_sandbox.emit({"bt-adapter-state-changed", "state=off"});
    expectLog(m_sandbox.terminate(), "unsubscribes_in_callback");
}

TEST_F(DaemonTranscriptTest, ACallbackThatThrows) {
    m_sandbox.addPlugin("libfoo.so", "callback_throws");
    m_sandbox.ignoreLeaks();
    m_sandbox.start();
    m_sandbox.emit({"bt-adapter-state-changed"});
    expectLog(m_sandbox.wait(), "callback_throws", 255);
}

}  // namespace
