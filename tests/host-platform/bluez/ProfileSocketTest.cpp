// Tests the sockets that BlueZ passes to the platform for connections of its profiles.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <regex>
#include <string>

#include "tests/host-platform/bluez/mock/BluezTvFixture.h"

namespace {

using testing::HasSubstr;
using testing::Not;

constexpr const char* SERIAL = "00001101-0000-1000-8000-00805f9b34fb";
constexpr const char* OTHER = "11111111-2222-3333-4444-555555555555";
constexpr const char* FIRST_PATH = "/org/corvane/profile/0";
constexpr const char* SECOND_PATH = "/org/corvane/profile/1";

class ProfileSocketTest : public BluezTvFixture {
protected:
    void start() {
        startAll(std::string("profiles = ") + SERIAL + ", " + OTHER + "\n");
        ASSERT_TRUE(m_bluez->waitForLine("RegisterProfile \"/org/corvane/profile/1\""))
            << m_bluez->output();
    }

    void connect(const std::string& path = FIRST_PATH) {
        EXPECT_EQ(call("ConnectProfile", {daemonId(), path, DEVICE}), "('ok',)\n");
    }

    // Returns the next connection event, with N in place of the socket's number.
    std::string nextConnection() {
        return std::regex_replace(nextEvent("bt-socket-connection-state-changed"),
                                  std::regex("socket_fd=[0-9]+"), "socket_fd=N");
    }

    std::string nextData() {
        return std::regex_replace(nextEvent("bt-socket-data-received"),
                                  std::regex("socket_fd=[0-9]+"), "socket_fd=N");
    }

    static std::string connection(const std::string& state, const std::string& uuid) {
        return "result=0 state=" + state +
               " connection={socket_fd=N server_fd=-1 local_role=server "
               "remote_address=\"AA:BB:CC:DD:EE:01\" service_uuid=\"" +
               uuid + "\"}";
    }
};

TEST_F(ProfileSocketTest, NoProfileIsRegisteredUnlessAskedFor) {
    startAll();
    settle();
    EXPECT_THAT(m_bluez->output(), Not(HasSubstr("RegisterProfile")));
}

TEST_F(ProfileSocketTest, EveryProfileAskedForIsRegistered) {
    start();
    EXPECT_THAT(m_bluez->output(), HasSubstr(SERIAL));
    EXPECT_THAT(m_bluez->output(), HasSubstr(OTHER));
}

TEST_F(ProfileSocketTest, ConnectionIsReportedWithItsProfile) {
    start();
    connect();
    EXPECT_EQ(nextConnection(), connection("connected", SERIAL));
    connect(SECOND_PATH);
    EXPECT_EQ(nextConnection(), connection("connected", OTHER));
}

TEST_F(ProfileSocketTest, DataIsReportedAsItComes) {
    start();
    connect();
    call("SendToSocket", {"hi"});
    EXPECT_EQ(nextData(), "data={socket_fd=N data=[6869]}");
    call("SendToSocket", {"!"});
    EXPECT_EQ(nextData(), "data={socket_fd=N data=[21]}");
}

TEST_F(ProfileSocketTest, MoreThanOnePortionArrivesWhole) {
    start();
    connect();
    call("SendToSocket", {std::string(10000, 'a')});
    std::size_t bytes = 0;
    while (bytes < 10000) {
        const auto data = nextData();
        ASSERT_FALSE(data.empty());
        bytes += (data.size() - std::string("data={socket_fd=N data=[]}").size()) / 2;
    }
    EXPECT_EQ(bytes, 10000U);
}

TEST_F(ProfileSocketTest, EndOfTheRemoteDisconnectsAndIsNoData) {
    start();
    connect();
    EXPECT_EQ(nextConnection(), connection("connected", SERIAL));
    call("SendToSocket", {"last"});
    call("CloseSocket", {});
    EXPECT_EQ(nextData(), "data={socket_fd=N data=[6c617374]}");
    EXPECT_EQ(nextConnection(), connection("disconnected", SERIAL));
    EXPECT_EQ(countOf("bt-socket-data-received"), 1);
}

TEST_F(ProfileSocketTest, BluezMayAskForTheDisconnection) {
    start();
    connect();
    connect(SECOND_PATH);
    EXPECT_EQ(call("DisconnectProfile", {daemonId(), SECOND_PATH, DEVICE}), "('ok',)\n");
    EXPECT_EQ(nextConnection(), connection("connected", SERIAL));
    EXPECT_EQ(nextConnection(), connection("connected", OTHER));
    EXPECT_EQ(nextConnection(), connection("disconnected", OTHER));
    EXPECT_EQ(call("ReceiveFromSocket", {"1"}), "('',)\n");
    settle();
    EXPECT_EQ(countOf("bt-socket-connection-state-changed"), 3);
}

TEST_F(ProfileSocketTest, DaemonThatEndsClosesItsSockets) {
    start();
    connect();
    EXPECT_EQ(nextConnection(), connection("connected", SERIAL));
    EXPECT_EQ(m_daemon->terminate(), 0) << m_daemon->errors();
    EXPECT_EQ(call("ReceiveFromSocket", {"1"}), "('',)\n");
}

}  // namespace
