// Tests the platform log in the journal. A socket of the test program replaces the journal, in a
// private /run.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <string>

#include "tests/support/process/ChildProcess.h"

namespace {

using testing::HasSubstr;

class LogJournalTest : public testing::Test {
protected:
    void SetUp() override {
        if (runPrivately("true").status != 0) {
            GTEST_SKIP() << "this machine does not allow a private /run";
        }
    }

    static ChildProcess::Result runPrivately(const std::string& command) {
        return ChildProcess::run({{"unshare", geteuid() == 0 ? "-m" : "-mr", "sh", "-c",
                                   "mount -t tmpfs none /run && mkdir -p /run/systemd/journal && "
                                   "exec " +
                                       command}});
    }

    static ChildProcess::Result run(const std::string& what) {
        return runPrivately(std::string(LOG_JOURNAL_PROGRAM) + ' ' + what);
    }
};

TEST_F(LogJournalTest, TakesRecordsWithFieldsIfItHasTheStandardError) {
    const auto result = run("priorities");
    EXPECT_EQ(result.output,
              "MESSAGE=priority 3|PRIORITY=7|SYSLOG_IDENTIFIER=TEST\n"
              "MESSAGE=priority 4|PRIORITY=6|SYSLOG_IDENTIFIER=TEST\n"
              "MESSAGE=priority 5|PRIORITY=4|SYSLOG_IDENTIFIER=TEST\n"
              "MESSAGE=priority 6|PRIORITY=3|SYSLOG_IDENTIFIER=TEST\n");
    EXPECT_EQ(result.errors, "");
}

// The text is not trusted: it may contain the name of a remote device, for example.
TEST_F(LogJournalTest, LearnsThePlaceFromTheFormatAndNotFromTheText) {
    EXPECT_EQ(run("places").output,
              "MESSAGE=main.cpp: start(42) > go 1|PRIORITY=6|SYSLOG_IDENTIFIER=TEST|"
              "CODE_FILE=main.cpp|CODE_LINE=42|CODE_FUNC=start\n"
              "MESSAGE=a.h: operator()(7) > |PRIORITY=6|SYSLOG_IDENTIFIER=TEST|"
              "CODE_FILE=a.h|CODE_LINE=7|CODE_FUNC=operator()\n"
              "MESSAGE=main.cpp: (null)(42) > go|PRIORITY=6|SYSLOG_IDENTIFIER=TEST\n"
              "MESSAGE=main.cpp: start(42) - go|PRIORITY=6|SYSLOG_IDENTIFIER=TEST\n"
              "MESSAGE=main.cpp: start(42) > go|PRIORITY=6|SYSLOG_IDENTIFIER=TEST\n");
}

TEST_F(LogJournalTest, StripsOneNewlineAndKeepsTheOthersWithinTheMessage) {
    EXPECT_EQ(run("lines").output,
              "MESSAGE:a\nb\n|PRIORITY=6|SYSLOG_IDENTIFIER=\n"
              "MESSAGE=c|PRIORITY=6|SYSLOG_IDENTIFIER=TEST\n"
              "MESSAGE:d\te [1m  f\nCODE_LINE=1|PRIORITY=6|SYSLOG_IDENTIFIER=TEST\n");
}

TEST_F(LogJournalTest, GetsNothingIfTheStandardErrorLeadsElsewhere) {
    const auto result = run("elsewhere");
    EXPECT_EQ(result.output, "");
    EXPECT_THAT(result.errors, HasSubstr("I TEST: here\n"));
}

TEST_F(LogJournalTest, IsTakenByTheSettings) {
    const auto result = run("forced");
    EXPECT_EQ(result.output, "MESSAGE=here|PRIORITY=6|SYSLOG_IDENTIFIER=TEST\n");
    EXPECT_EQ(result.errors, "");
}

TEST_F(LogJournalTest, IsReportedMissingAndTheStandardErrorTaken) {
    const auto result = run("missing");
    EXPECT_EQ(result.output, "");
    EXPECT_THAT(result.errors,
                HasSubstr("E SETTINGS: the log can't go to the journal, there is none\n"));
    EXPECT_THAT(result.errors, HasSubstr("I TEST: here\n"));
}

TEST_F(LogJournalTest, MayDie) {
    const auto result = run("dead");
    EXPECT_EQ(result.status, 0) << result.errors;
    EXPECT_EQ(result.output, "MESSAGE=here|PRIORITY=6|SYSLOG_IDENTIFIER=TEST\n");
}

}  // namespace
