// Tests the smallest sample plugin with injected events.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/process/HostFixture.h"

namespace {

using AdapterWatchTest = HostFixture;

TEST_F(AdapterWatchTest, CountsHowOftenTheAdapterWasSwitchedOn) {
    startDaemon(ADAPTER_WATCH_PLUGIN);
    for (const char* state : {"state=on", "state=off", "state=on"}) {
        const auto result = tool({"emit", "bt-adapter-state-changed", state});
        EXPECT_EQ(result.output, "bt-adapter-state-changed: delivered to 1 callback\n")
            << result.errors;
    }
    EXPECT_NE(nextLine("ADAPTER_WATCH: the adapter is on; switched on 1 times so far"), "");
    EXPECT_NE(nextLine("ADAPTER_WATCH: the adapter is off; switched on 1 times so far"), "");
    EXPECT_NE(nextLine("ADAPTER_WATCH: the adapter is on; switched on 2 times so far"), "");
    EXPECT_EQ(m_daemon->terminate(), 0);
    EXPECT_NE(nextLine("ADAPTER_WATCH: the adapter was switched on 2 times"), "");
}

}  // namespace
