// Tests the agent for pairing and authorization: the requests that it reports and its answers.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <signal.h>

#include <string>

#include "tests/host-platform/bluez/mock/BluezTvFixture.h"

namespace {

using testing::HasSubstr;
using testing::Not;

class AgentTest : public BluezTvFixture {
protected:
    void start(const std::string& answer = "") {
        startAll("agent = DisplayYesNo\n" +
                 (answer.empty() ? answer : "agent_answer = " + answer + "\n"));
    }

    std::string agents() { return call("Agents", {}); }

    std::string ask(const std::string& method, const std::string& more = "") {
        return call("CallAgent", {daemonId(), method,
                                  std::string("[<objectpath '") + DEVICE + "'>" + more + "]"});
    }

    // Expects the next authentication request to have this type and key.
    void expectRequest(const std::string& type, const std::string& key) {
        EXPECT_EQ(nextEvent("bt-adapter-authentication-req"),
                  "result=0 type=" + type +
                      " name=\"Headset\" address=\"AA:BB:CC:DD:EE:01\" key=\"" + key + '"');
    }
};

TEST_F(AgentTest, IsThereOnlyIfConfigured) {
    startAll();
    EXPECT_EQ(agents(), "('',)\n");
}

TEST_F(AgentTest, IsRegisteredWithItsCapabilityAndNotAsTheDefault) {
    start();
    EXPECT_EQ(agents(), "('/org/corvane/agent DisplayYesNo',)\n");
    settle();
    EXPECT_THAT(m_bluez->output(), Not(HasSubstr("RequestDefaultAgent")));
}

TEST_F(AgentTest, IsTheDefaultOnlyIfConfigured) {
    startAll("agent = KeyboardDisplay\nagent_default = yes\n");
    EXPECT_TRUE(m_bluez->waitForLine("RequestDefaultAgent")) << m_bluez->output();
}

TEST_F(AgentTest, IsRegisteredAgainWithARestartedBluez) {
    start();
    m_bluez->terminate();
    EXPECT_EQ(nextEvent("bt-adapter-state-changed"), "result=0 state=off");
    startTvBluez();
    EXPECT_TRUE(m_bluez->waitForLine("RegisterAgent")) << m_bluez->output();
}

TEST_F(AgentTest, ThatIsRefusedIsReported) {
    startTv();
    run({"gdbus", "call", "--system", "-d", "org.bluez", "-o", "/org/bluez", "-m",
         "org.bluez.AgentManager1.RegisterAgent", "/org/corvane/agent", "DisplayOnly"});
    startDaemonThere("agent = DisplayYesNo\n");
    EXPECT_THAT(nextLine("BLUEZ"), HasSubstr("BlueZ refuses the agent \"DisplayYesNo\""));
}

TEST_F(AgentTest, RejectsByDefaultAfterReporting) {
    start();
    EXPECT_THAT(ask("RequestPinCode"), HasSubstr("org.bluez.Error.Rejected"));
    expectRequest("pin-request", "");
    EXPECT_THAT(ask("RequestPasskey"), HasSubstr("org.bluez.Error.Rejected"));
    expectRequest("passkey-request", "");
    EXPECT_THAT(ask("RequestConfirmation", ", <uint32 42>"), HasSubstr("org.bluez.Error.Rejected"));
    expectRequest("passkey-confirm", "000042");
    EXPECT_THAT(ask("RequestAuthorization"), HasSubstr("org.bluez.Error.Rejected"));
    EXPECT_EQ(nextEvent("bt-adapter-ssp-conecnt-request"),
              "result=0 name=\"Headset\" address=\"AA:BB:CC:DD:EE:01\"");
}

TEST_F(AgentTest, AcceptsIfConfigured) {
    start("accept");
    EXPECT_EQ(ask("RequestPinCode"), "('ok 0000',)\n");
    EXPECT_EQ(ask("RequestPasskey"), "('ok 0',)\n");
    EXPECT_EQ(ask("RequestConfirmation", ", <uint32 123456>"), "('ok',)\n");
    expectRequest("pin-request", "");
    expectRequest("passkey-request", "");
    expectRequest("passkey-confirm", "123456");
    EXPECT_EQ(ask("RequestAuthorization"), "('ok',)\n");
}

TEST_F(AgentTest, WhatIsToBeDisplayedIsReported) {
    start();
    EXPECT_EQ(ask("DisplayPinCode", ", <'7788'>"), "('ok',)\n");
    expectRequest("pin-display", "7788");
    EXPECT_EQ(ask("DisplayPasskey", ", <uint32 4711>, <uint16 0>"), "('ok',)\n");
    expectRequest("passkey-display", "004711");
    EXPECT_EQ(ask("DisplayPasskey", ", <uint32 4711>, <uint16 1>"), "('ok',)\n");
    settle();
    EXPECT_EQ(countOf("bt-adapter-authentication-req"), 2);
}

TEST_F(AgentTest, ServicesAreAuthorizedByTheirNumbers) {
    start("accept");
    const auto expect = [this](const std::string& uuid, const std::string& service) {
        EXPECT_EQ(ask("AuthorizeService", ", <'0000" + uuid + "-0000-1000-8000-00805f9b34fb'>"),
                  "('ok',)\n");
        EXPECT_EQ(nextEvent("bt-device-auth-event"),
                  "result=0 name=\"Headset\" address=\"AA:BB:CC:DD:EE:01\" service=" + service);
    };
    expect("1101", "serial-port");
    expect("110a", "a2dp-source");
    expect("110b", "a2dp-sink");
    expect("110c", "avrcp-target");
    expect("110e", "avrcp-control");
    expect("110f", "avrcp-control");
    expect("111e", "hands-free");
    expect("1124", "hid");
    expect("1200", "unknown");
    expect("110d", "unknown");
    updateDevice("{'UUIDs': <['0000110b-0000-1000-8000-00805f9b34fb']>}");
    settle();
    expect("110d", "a2dp-source");
    updateDevice("{'UUIDs': <['0000110a-0000-1000-8000-00805f9b34fb']>}");
    settle();
    expect("110d", "a2dp-sink");
}

TEST_F(AgentTest, CancelIsAnsweredAndQuestionsGoOn) {
    start("accept");
    EXPECT_EQ(call("CallAgent", {daemonId(), "Cancel", "@av []"}), "('ok',)\n");
    EXPECT_EQ(ask("RequestPinCode"), "('ok 0000',)\n");
}

// SIGSTOP pauses the daemon, so that the request and its cancellation arrive together.
TEST_F(AgentTest, QuestionThatIsCancelledIsNotAnswered) {
    start();
    m_daemon->sendSignal(SIGSTOP);
    call("AskAndCancel", {daemonId(), DEVICE});
    EXPECT_EQ(call("AgentAnswers", {}), "('',)\n");
    m_daemon->sendSignal(SIGCONT);
    expectRequest("pin-request", "");
    settle();
    settle();
    EXPECT_EQ(call("AgentAnswers", {}), "('Cancel ok',)\n");
}

TEST_F(AgentTest, AnswersOnlyBluez) {
    start("accept");
    const auto answer = call("NameOf", {daemonId()});  // for example (':1.5',)
    const auto begin = answer.find(':');
    const auto name = answer.substr(begin, answer.find('\'', begin) - begin);
    const auto refused =
        runAnyhow({"gdbus", "call", "--system", "-d", name, "-o", "/org/corvane/agent", "-m",
                   "org.bluez.Agent1.RequestPinCode", DEVICE});
    EXPECT_NE(refused.status, 0);
    EXPECT_THAT(refused.errors, HasSubstr("only BlueZ may call this"));
    settle();
    EXPECT_EQ(countOf("bt-adapter-authentication-req"), 0);
}

}  // namespace
