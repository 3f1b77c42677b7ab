// An exception of a plugin's callback leaves the main loop and ends the daemon in
// the way it ends on all exceptions.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/process/HostFixture.h"

namespace {

class ExceptionTest : public BluezFixture {
protected:
    void startThrowingDaemon() {
        // On this way out the main-loop library is not shut down: its classes stay allocated,
        // and a leak checker would change the exit status.
        startDaemon(THROWING_PLUGIN, {{"ASAN_OPTIONS", "detect_leaks=0"}});
    }

    void expectOrderlyFailure() {
        EXPECT_NE(nextLine("exception : from a callback"), "");
        EXPECT_EQ(m_daemon->wait(), 255);
    }
};

TEST_F(ExceptionTest, EndsTheDaemonWhenTheEventWasInjected) {
    startThrowingDaemon();
    const auto result = tool({"emit", "bt-adapter-state-changed"});
    EXPECT_EQ(result.status, 0) << result.errors;
    expectOrderlyFailure();
}

TEST_F(ExceptionTest, EndsTheDaemonWhenTheEventIsFromBluez) {
    startBus();
    startBluez();
    startThrowingDaemon();
    mock({"AddAdapter", "ss", "hci0", "desk"});
    expectOrderlyFailure();
}

}  // namespace
