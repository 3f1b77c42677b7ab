// Tests the warning about callbacks that take too long.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/process/HostFixture.h"

namespace {

using testing::HasSubstr;
using testing::Not;

class SlowCallbackTest : public HostFixture {
protected:
    // Sets slow_ms to `limit` and returns the daemon's log of a callback that takes 20 ms.
    std::string logWithLimit(const std::string& limit) {
        startDaemon(DIRECTED_PLUGIN, withSettings("[callbacks]\nslow_ms = " + limit + '\n'));
        EXPECT_EQ(tool({"emit", "bt-adapter-name-changed", "name=work"}).status, 0);
        EXPECT_EQ(m_daemon->terminate(), 0);
        return m_daemon->errors();
    }
};

TEST_F(SlowCallbackTest, IsReportedWithItsEventAndThread) {
    const auto log = logWithLimit("10");
    EXPECT_THAT(log, HasSubstr("W SLOW: bt-adapter-name-changed: the callback kept thread " +
                               std::to_string(m_daemon->id()) + " for "));
    EXPECT_THAT(log, HasSubstr("; the limit is 10 ms"));
}

TEST_F(SlowCallbackTest, IsNotReportedBelowTheLimit) {
    EXPECT_THAT(logWithLimit("3600000"), Not(HasSubstr("SLOW")));
}

TEST_F(SlowCallbackTest, IsNotReportedWithoutALimit) {
    EXPECT_THAT(logWithLimit("0"), Not(HasSubstr("SLOW")));
}

}  // namespace
