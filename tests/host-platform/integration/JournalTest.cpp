// Tests the daemon's log in a real journal, which runs with a private /run, and the daemon with a
// standard error that can't be written.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <memory>
#include <string>
#include <vector>

#include "tests/support/process/ChildProcess.h"
#include "tests/support/process/DaemonDirectory.h"

namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::Not;

class DaemonLogTest : public testing::Test {
protected:
    DaemonLogTest() { m_directory.addPlugin(EVENT_LOG_PLUGIN); }

    ChildProcess::Options daemon(const std::vector<std::string>& command) const {
        auto options = m_directory.daemon();
        options.command = command;
        options.environment.erase("CORVANE_LOG_LEVEL");
        options.unset.insert(options.unset.end(), {"CORVANE_LOG_LEVEL", "JOURNAL_STREAM"});
        return options;
    }

    std::string socket() const { return m_directory.socket(); }

    ChildProcess::Result emit() const {
        return ChildProcess::run(
            {{TOOL, "--socket", socket(), "emit", "bt-adapter-state-changed"}});
    }

    DaemonDirectory m_directory;
};

class JournalTest : public DaemonLogTest {
protected:
    void SetUp() override {
        const std::vector<std::string> unshare{"unshare", geteuid() == 0 ? "-m" : "-mr"};
        auto probe = unshare;
        probe.insert(probe.end(), {"mount", "-t", "tmpfs", "none", "/run"});
        if (ChildProcess::run({probe}).status != 0) {
            GTEST_SKIP() << "this machine does not allow a private /run";
        }
        auto command = unshare;
        command.insert(
            command.end(),
            {"sh", "-c",
             "mount -t tmpfs none /run && mkdir -p /run/systemd/journal /run/log/journal "
             "&& echo ready && exec /lib/systemd/systemd-journald"});
        m_journal = std::make_unique<ChildProcess>(ChildProcess::Options{command});
        ASSERT_TRUE(m_journal->waitForLine("ready")) << m_journal->errors();
        const auto waiting = ChildProcess::run(
            {beside({"timeout", "20", "sh", "-c",
                     "until [ -S /run/systemd/journal/socket ]; do sleep .01; done"})});
        ASSERT_EQ(waiting.status, 0) << m_journal->errors();
    }

    // Returns a command line that runs `command` in the journal's mount namespace and root.
    std::vector<std::string> beside(const std::vector<std::string>& command) const {
        std::vector<std::string> result{"nsenter", "-t", std::to_string(m_journal->id()), "-m",
                                        "-r"};
        if (geteuid() != 0) {
            result.insert(result.end(), {"-U", "--preserve-credentials"});
        }
        result.push_back("--wd=" + m_directory.directory().string());
        result.insert(result.end(), command.begin(), command.end());
        return result;
    }

    std::unique_ptr<ChildProcess> m_journal;
};

TEST_F(JournalTest, HasTheDaemonsRecordsAndTheStandardErrorHasNone) {
    // --merge lets journalctl start before the journal has its first file.
    ChildProcess reader({beside({"journalctl", "--directory=/run/log/journal", "--merge",
                                 "--follow", "--lines=all", "--output=json"})});
    ChildProcess running(daemon(
        beside({"sh", "-c", "JOURNAL_STREAM=$(stat -L -c %d:%i /proc/self/fd/2) exec " DAEMON})));
    const auto line = reader.waitForLine("end init func");
    ASSERT_TRUE(line) << reader.errors() << running.errors();
    EXPECT_THAT(
        *line,
        AllOf(HasSubstr("\"SYSLOG_IDENTIFIER\":\"QVX\""), HasSubstr("\"PRIORITY\":\"6\""),
              HasSubstr("\"CODE_FILE\":\"Plugin.cpp\""),
              HasSubstr("\"CODE_FUNC\":\"loadServicePlugin\""), HasSubstr("\"CODE_LINE\":\""),
              HasSubstr("\"MESSAGE\":\"Plugin.cpp: loadServicePlugin(")));
    EXPECT_EQ(emit().status, 0);
    const auto event = reader.waitForLine("bt-adapter-state-changed");
    ASSERT_TRUE(event);
    EXPECT_THAT(*event, AllOf(HasSubstr("\"SYSLOG_IDENTIFIER\":\"EVENT_LOG\""),
                              Not(HasSubstr("CODE_FUNC"))));
    EXPECT_EQ(running.terminate(), 0);
    EXPECT_EQ(running.errors(), "");
}

struct BadStream {
    const char* name;
    const char* redirection;
};

class BadStreamTest : public DaemonLogTest, public testing::WithParamInterface<BadStream> {};

TEST_P(BadStreamTest, DoesTheDaemonNoHarm) {
    ChildProcess running(
        daemon({"sh", "-c", std::string("exec " DAEMON " ") + GetParam().redirection}));
    const auto waiting = ChildProcess::run(
        {{"timeout", "20", "sh", "-c", "until [ -S " + socket() + " ]; do sleep .01; done"}});
    ASSERT_EQ(waiting.status, 0);
    const auto emitted = emit();
    EXPECT_EQ(emitted.status, 0) << emitted.errors;
    EXPECT_EQ(emit().status, 0);
    EXPECT_EQ(running.terminate(), 0);
    EXPECT_EQ(running.output() + running.errors(), "");
}

INSTANTIATE_TEST_SUITE_P(All, BadStreamTest,
                         testing::Values(BadStream{"Full", "2>/dev/full"},
                                         BadStream{"Closed", "2>&-"},
                                         BadStream{"AllClosed", "<&- >&- 2>&-"}),
                         [](const auto& parameter) { return parameter.param.name; });

}  // namespace
