// Tests that an exception of a plugin's callback leaves the main loop, and that the daemon logs it
// and ends with the exit status 255.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/process/HostFixture.h"

namespace {

class ExceptionTest : public BluezFixture {
protected:
    void startThrowingDaemon() {
        // After an exception the daemon does not shut down the main-loop library. Leak detection
        // would report the library's memory and change the exit status.
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
