// Tests how the daemon handles the start, the end and a restart of BlueZ and of the bus.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sstream>
#include <string>

#include "tests/support/process/HostFixture.h"

namespace {

using testing::HasSubstr;
using testing::Not;

class BluezBusTest : public BluezFixture {
protected:
    std::string nextState() { return nextEvent("bt-adapter-state-changed"); }
};

TEST_F(BluezBusTest, WhatIsFoundAtTheStartIsNoEventExceptTheAdapterState) {
    startBus();
    startBluez();
    mock({"AddAdapter", "ss", "hci0", "desk"});
    addDevice();
    mock({"ConnectDevice", "ss", "hci0", DEVICE_ADDRESS});
    startDaemon();
    EXPECT_EQ(nextState(), "result=0 state=on");
    mock({"DisconnectDevice", "ss", "hci0", DEVICE_ADDRESS});
    EXPECT_THAT(nextEvent("bt-device-connection-state-changed"), HasSubstr("connected=false"));
    EXPECT_THAT(m_daemon->errors(), Not(HasSubstr("connected=true")));
    EXPECT_THAT(m_daemon->errors(), Not(HasSubstr("bt-adapter-name-changed")));
}

TEST_F(BluezBusTest, AnAdapterThatIsOffIsReportedOffAtTheStart) {
    startBus();
    startBluez();
    mock({"AddAdapter", "ss", "hci0", "desk"});
    update(ADAPTER, "org.bluez.Adapter1", "{'Powered': <false>}");
    startDaemon();
    EXPECT_EQ(nextState(), "result=0 state=off");
}

TEST_F(BluezBusTest, BluezThatEndsLeavesTheAdapterOffUntilItIsBack) {
    startWithAdapter();
    m_bluez->terminate();
    EXPECT_EQ(nextState(), "result=0 state=off");
    startBluez();
    mock({"AddAdapter", "ss", "hci0", "desk"});
    EXPECT_EQ(nextState(), "result=0 state=on");
}

TEST_F(BluezBusTest, BusThatEndsLeavesTheAdapterOffUntilItIsBack) {
    startBus();
    startBluez();
    startDaemon(EVENT_LOG_PLUGIN, {{"EINA_LOG_LEVEL", "2"}});
    mock({"AddAdapter", "ss", "hci0", "desk"});
    EXPECT_EQ(nextState(), "result=0 state=on");
    m_bus->terminate();
    EXPECT_EQ(nextState(), "result=0 state=off");
    startBus();
    startBluez();
    mock({"AddAdapter", "ss", "hci0", "desk"});
    EXPECT_EQ(nextState(), "result=0 state=on");
    // Ecore logs a warning about epoll if a file descriptor is closed while Ecore uses it.
    EXPECT_THAT(m_daemon->errors(), Not(HasSubstr("epoll")));
}

TEST_F(BluezBusTest, BusAndBluezMayComeAfterTheDaemon) {
    startDaemon();
    startBus();
    startBluez();
    mock({"AddAdapter", "ss", "hci0", "desk"});
    EXPECT_EQ(nextState(), "result=0 state=on");
    EXPECT_EQ(m_daemon->terminate(), 0);
}

TEST_F(BluezBusTest, WithoutABusTheDaemonIsQuietAndEndsInOrder) {
    startDaemon(EVENT_LOG_PLUGIN, withSettings("[callbacks]\nslow_ms = 0\n"));
    EXPECT_EQ(tool({"emit", "bt-adapter-state-changed"}).status, 0);
    EXPECT_EQ(m_daemon->terminate(), 0);
    std::istringstream lines(m_daemon->errors());
    for (std::string line; std::getline(lines, line);) {
        EXPECT_THAT(line, testing::ContainsRegex("^[0-9:]+\\.[0-9]+ [0-9]+ I (QVX|EVENT_LOG): "));
    }
    EXPECT_EQ(m_daemon->output(), "");
}

TEST_F(BluezBusTest, DaemonEndsInOrderWithBluez) {
    startWithAdapter();
    addDevice();
    EXPECT_EQ(m_daemon->terminate(), 0);
    EXPECT_THAT(m_daemon->errors(), Not(HasSubstr("state=off")));
}

}  // namespace
