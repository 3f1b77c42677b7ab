// Tests the D-Bus interface of injection: its methods and the requests that it refuses.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/socket.h>
#include <unistd.h>

#include <string>
#include <vector>

#include "tests/support/process/HostFixture.h"

namespace {

using testing::HasSubstr;
using Words = std::vector<std::string>;

class InjectProtocolTest : public HostFixture {
protected:
    void SetUp() override { startDaemon(); }

    // Makes a raw call, expects it to fail and returns the error.
    std::string refused(const Words& arguments) {
        Words command{"busctl",
                      "--address=unix:path=" + socket().string(),
                      "call",
                      "x.y",
                      "/org/corvane/Inject",
                      "org.corvane.Inject1"};
        command.insert(command.end(), arguments.begin(), arguments.end());
        const auto result = runAnyhow(command);
        EXPECT_NE(result.status, 0);
        return result.errors;
    }

    // Runs the tool, expects it to fail and returns the error.
    std::string toolError(const Words& arguments) {
        const auto result = tool(arguments);
        EXPECT_EQ(result.status, 1);
        EXPECT_EQ(result.output, "");
        return result.errors;
    }

    void expectAlive() {
        EXPECT_EQ(tool({"emit", "bt-adapter-state-changed"}).status, 0);
        EXPECT_EQ(nextEvent("bt-adapter-state-changed"), "result=0 state=on");
    }
};

TEST_F(InjectProtocolTest, NamesItsMethodsAndTheirArguments) {
    const auto text = run({"gdbus", "introspect", "--address", "unix:path=" + socket().string(),
                           "--dest", "x.y", "-o", "/org/corvane/Inject"});
    EXPECT_THAT(text, HasSubstr("interface org.corvane.Inject1"));
    EXPECT_THAT(text, HasSubstr("BtDeviceBondCreated(in  i result,"));
    EXPECT_THAT(text, HasSubstr("in  a{sv} info,"));
    EXPECT_THAT(text, HasSubstr("out u callbacks);"));
}

TEST_F(InjectProtocolTest, IsCalledByGdbus) {
    EXPECT_EQ(
        run({"gdbus", "call", "--address", "unix:path=" + socket().string(), "--dest", "x.y", "-o",
             "/org/corvane/Inject", "-m", "org.corvane.Inject1.BtAdapterStateChanged", "0", "off"}),
        "(uint32 1,)\n");
    EXPECT_EQ(nextEvent("bt-adapter-state-changed"), "result=0 state=off");
}

TEST_F(InjectProtocolTest, RefusesValuesOutsideAnEnumeration) {
    EXPECT_THAT(refused({"BtAdapterStateChanged", "is", "0", "blue"}),
                HasSubstr("state can't be \"blue\"; it must be off (0) or on (1)"));
    EXPECT_THAT(refused({"BtAdapterStateChanged", "is", "0", "2"}),
                HasSubstr("state can't be \"2\""));
}

TEST_F(InjectProtocolTest, RefusesUnknownKeysAndWrongTypesInRecords) {
    EXPECT_THAT(refused({"BtDeviceServiceSearched", "ia{sv}", "0", "1", "name", "s", "x"}),
                HasSubstr("info has no field \"name\"; its fields are remote_address, "
                          "service_uuid"));
    EXPECT_THAT(refused({"BtDeviceServiceSearched", "ia{sv}", "0", "1", "service_uuid", "s", "x"}),
                HasSubstr("service_uuid can't be of the type \"s\"; it must be of \"as\""));
    EXPECT_THAT(
        refused({"BtDeviceConnectionStateChanged", "ba{sv}", "true", "1", "link", "s", "usb"}),
        HasSubstr("link can't be \"usb\"; it must be bredr (0) or le (1)"));
    expectAlive();
}

TEST_F(InjectProtocolTest, RefusesCountsThatReadBeyondTheEnd) {
    EXPECT_THAT(refused({"BtDeviceServiceSearched", "ia{sv}", "0", "1", "service_count", "i", "3"}),
                HasSubstr("service_count can't be 3 with 2 in service_uuid"));
    EXPECT_THAT(refused({"BtDeviceServiceSearched", "ia{sv}", "0", "2", "service_uuid", "as", "0",
                         "service_count", "i", "1"}),
                HasSubstr("service_count can't be 1 with 0 in service_uuid"));
    EXPECT_THAT(refused({"BtDeviceBondCreated", "ia{sv}", "0", "1", "service_count", "i", "3"}),
                HasSubstr("with an empty service_uuid it may have any value"));
    EXPECT_THAT(toolError({"emit", "bt-adapter-device-discovery-state-changed",
                           "service_uuid=", "service_count=1"}),
                HasSubstr("service_count can't be 1 with 0 in service_uuid"));
    expectAlive();
}

TEST_F(InjectProtocolTest, RefusesToLeaveOutARecordThatMustBeThere) {
    EXPECT_THAT(refused({"BtSocketDataReceived", "a{sv}", "1", "present", "b", "false"}),
                HasSubstr("received has no field \"present\"; its fields are socket_fd, data"));
}

TEST_F(InjectProtocolTest, RefusesArgumentsOfWrongTypesAndUnknownMethods) {
    EXPECT_THAT(refused({"BtAdapterStateChanged", "ss", "0", "on"}),
                HasSubstr("Invalid arguments 'ss'"));
    EXPECT_NE(refused({"BtNothing"}), "");
}

TEST_F(InjectProtocolTest, ToolNamesTheArgumentAndWhatIsAllowed) {
    EXPECT_EQ(toolError({"emit", "bt-adapter-state-changed", "state=blue"}),
              "corvane: state can't be \"blue\"; it must be off (0) or on (1)\n");
    EXPECT_EQ(toolError({"emit", "bt-adapter-name-changed", "name=\xff"}),
              "corvane: name must be a text in UTF-8\n");
    EXPECT_THAT(toolError({"emit", "bt-adapter-stat-changed"}),
                HasSubstr("the nearest names are\n  bt-adapter-state-changed\n"));
}

TEST_F(InjectProtocolTest, ToolExplainsItself) {
    EXPECT_EQ(tool({"--help"}).status, 0);
    EXPECT_THAT(tool({"emit", "--help"}).output, HasSubstr("remote_name=Headset"));
    EXPECT_THAT(tool({"list"}).output, HasSubstr("bt-device-service-searched"));
    EXPECT_EQ(tool({}).status, 2);
    EXPECT_EQ(tool({"emit"}).status, 2);
}

TEST_F(InjectProtocolTest, DropsAPeerThatTalksNonsense) {
    const int peer = connectPeer();
    const std::string nonsense(5000, '!');
    EXPECT_GT(send(peer, nonsense.data(), nonsense.size(), MSG_NOSIGNAL), 0);
    std::string answer(100, '\0');
    ssize_t size = 0;
    while ((size = recv(peer, answer.data(), answer.size(), 0)) > 0) {
    }
    EXPECT_LE(size, 0);
    close(peer);
    expectAlive();
}

TEST_F(InjectProtocolTest, OutlivesPeersThatGoAwayOrSayNothing) {
    const int silent = connectPeer();
    close(connectPeer());
    const int half = connectPeer();
    EXPECT_GT(send(half, "\0AUTH EXT", 9, MSG_NOSIGNAL), 0);
    close(half);
    expectAlive();
    EXPECT_EQ(m_daemon->terminate(), 0);
    close(silent);
}

}  // namespace
