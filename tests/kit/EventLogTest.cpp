// Tests of the private data that the sample plugin event-log hides in the log.
#include <corvane/testkit.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <stdlib.h>

#include <string>

namespace {

using namespace corvane::testkit;

constexpr const char* VARIABLE = "CORVANE_EVENT_LOG_PRIVATE";

class EventLogTest : public testing::Test {
protected:
    EventLogTest() { unsetenv(VARIABLE); }
    ~EventLogTest() override { unsetenv(VARIABLE); }

    std::string lineOf(const std::string& event, const Arguments& arguments) {
        m_host.clearLog();
        m_host.emit(event, arguments);
        const auto log = m_host.log();
        return log.empty() ? "" : log.back().text;
    }

    Host m_host;
};

TEST_F(EventLogTest, HidesPasskeys) {
    m_host.load(EVENT_LOG_PLUGIN);
    EXPECT_EQ(
        lineOf("bt-adapter-authentication-req", {{"name", "n"}, {"address", "a"}}),
        "bt-adapter-authentication-req result=0 type=passkey-confirm name=\"n\" address=\"a\" "
        "key=hidden");
    EXPECT_THAT(lineOf("bt-adapter-authentication-req", {{"key", ""}}),
                testing::EndsWith(" key=\"\""));
}

TEST_F(EventLogTest, HidesWhatSocketsReceiveButNotHowMuch) {
    m_host.load(EVENT_LOG_PLUGIN);
    EXPECT_EQ(lineOf("bt-socket-data-received", {{"data", "00ff12"}}),
              "bt-socket-data-received data={socket_fd=7 data=[3 bytes hidden]}");
    EXPECT_EQ(lineOf("bt-socket-data-received", {{"data", ""}}),
              "bt-socket-data-received data={socket_fd=7 data=[]}");
}

TEST_F(EventLogTest, ShowsBothWhenTold) {
    setenv(VARIABLE, "show", 1);
    m_host.load(EVENT_LOG_PLUGIN);
    EXPECT_THAT(lineOf("bt-adapter-authentication-req", {{"key", "123456"}}),
                testing::EndsWith(" key=\"123456\""));
    EXPECT_THAT(lineOf("bt-socket-data-received", {{"data", "00ff12"}}),
                testing::EndsWith("data=[00ff12]}"));
}

TEST_F(EventLogTest, HidesThemAtAnyOtherValue) {
    setenv(VARIABLE, "yes", 1);
    m_host.load(EVENT_LOG_PLUGIN);
    EXPECT_THAT(lineOf("bt-adapter-authentication-req", {{"key", "123456"}}),
                testing::EndsWith(" key=hidden"));
}

}  // namespace
