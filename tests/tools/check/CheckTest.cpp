// Tests the output and the exit status of `corvane check`.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <stdlib.h>

#include <filesystem>

#include "tests/support/process/FileTime.h"
#include "tests/support/process/TemporaryDirectory.h"
#include "tests/tools/check/RunTool.h"

namespace {

namespace fs = std::filesystem;
using testing::AllOf;
using testing::ContainsRegex;
using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::SizeIs;

// Long limits, so that a busy machine does not cause a finding.
const std::vector<std::string> PATIENT{"--slow-ms", "10000", "--timeout", "60"};

TEST(CheckTest, TheSamplePluginsAreClean) {
    for (const std::string name : {"libadapter-watch.so", "libevent-log.so"}) {
        const auto result = check(PLUGIN_DIRECTORY "/" + name, PATIENT);
        EXPECT_TRUE(result.value("clean", false)) << result.dump(2);
    }
}

TEST(CheckTest, EveryEventIsDeliveredToWhoSubscribesToAll) {
    const auto result = check(PLUGIN_DIRECTORY "/libevent-log.so", PATIENT);
    ASSERT_TRUE(result.contains("run")) << result.dump(2);
    EXPECT_THAT(result["run"]["events"], SizeIs(42));
    // Each event is delivered once with its defaults and 20 times by threads. Some are also
    // delivered with other values.
    EXPECT_GT(result["run"]["delivered"], 42 * 21);
}

TEST(CheckTest, TheStatusIs0ForACleanPluginAnd1ForFindings) {
    const auto clean = runTool({"check", fixture("clean"), "--slow-ms", "10000"});
    EXPECT_EQ(clean.status, 0) << clean.output << clean.errors;
    EXPECT_THAT(clean.output, AllOf(HasSubstr("subscribed to 1 event\n"), HasSubstr("clean")));
    const auto wrong = runTool({"check", fixture("no_deinit")});
    EXPECT_EQ(wrong.status, 1);
    EXPECT_THAT(wrong.output, AllOf(HasSubstr("warning: no-deinit"), HasSubstr("1 warning\n")));
}

TEST(CheckTest, TheStatusIs2ForWhatCannotBeChecked) {
    const auto missing = runTool({"check", "/nowhere/libx.so"});
    EXPECT_EQ(missing.status, 2);
    EXPECT_EQ(missing.errors,
              "corvane: /nowhere/libx.so can't be checked: No such file or directory\n");
    EXPECT_EQ(runTool({"check", "/tmp"}).status, 2);
    EXPECT_EQ(runTool({"check"}).status, 2);
    EXPECT_EQ(runTool({"check", fixture("clean"), "--slow-ms", "soon"}).status, 2);
}

TEST(CheckTest, WhatCannotBeOpenedOrReadIsNamedWithTheReason) {
    const TemporaryDirectory directory;
    const auto errorOf = [&](const char* target) {
        const auto link = directory.path() / "libx.so";
        fs::create_symlink(target, link);
        const auto result = runTool({"check", link});
        fs::remove(link);
        EXPECT_EQ(result.status, 2);
        return result.errors;
    };
    EXPECT_THAT(errorOf("/proc/sys/net/ipv4/route/flush"),
                EndsWith("libx.so can't be copied: Permission denied\n"));
    // Nothing is mapped at the address 0.
    EXPECT_THAT(errorOf("/proc/self/mem"),
                EndsWith("libx.so can't be copied: Input/output error\n"));
}

TEST(CheckTest, AFileDatedAfter2038IsChecked) {
    const TemporaryDirectory directory;
    const auto file = directory.path() / "libclean.so";
    fs::copy_file(fixture("clean"), file);
    setTime(file, YEAR_2040);
    setTime(directory.path(), YEAR_2040);
    const auto result = check(file, PATIENT);
    EXPECT_TRUE(result.value("clean", false)) << result.dump(2);
}

TEST(CheckTest, StaticOnlyDoesNotRunThePlugin) {
    const auto result = check(fixture("init_returns_minus_3"), {"--static-only"});
    EXPECT_TRUE(result.value("clean", false)) << result.dump(2);
    EXPECT_FALSE(result.contains("run"));
}

TEST(CheckTest, TheLoadersOwnWordsAreGiven) {
    EXPECT_THAT(detailsOf(check("/etc/passwd"), "not-loadable"), HasSubstr("invalid ELF header"));
    EXPECT_THAT(detailsOf(check(fixture("missing_variable")), "not-loadable"),
                HasSubstr("undefined symbol: variableOfNoLibrary"));
}

TEST(CheckTest, EveryMissingFunctionIsNamed) {
    EXPECT_EQ(detailsOf(check(fixture("missing_function_in_callback")), "unresolved-symbols"),
              "functionOfNoLibrary()\n");
}

TEST(CheckTest, AFileThatIsNoCandidateIsFound) {
    std::string directory = testing::TempDir() + "corvane-XXXXXX";
    ASSERT_NE(mkdtemp(directory.data()), nullptr);
    const auto name = directory + "/libclean.so.1";
    fs::copy_file(fixture("clean"), name);
    const auto result = check(name, PATIENT);
    fs::remove_all(directory);
    ASSERT_THAT(result["findings"], SizeIs(1)) << result.dump(2);
    EXPECT_EQ(result["findings"][0]["id"], "not-a-candidate");
    EXPECT_EQ(result["run"]["delivered"].is_number(), true) << "it is run all the same";
}

TEST(CheckTest, ACrashIsNamedWithSignalEventAndPlace) {
    const auto details = detailsOf(check(fixture("crashes"), PATIENT), "crash");
    EXPECT_THAT(details, HasSubstr("SIGSEGV (Segmentation fault)\n"
                                   "during the delivery of bt-adapter-name-changed\n"));
    EXPECT_THAT(details, ContainsRegex("#0 [^\n]*writeNowhere\\(\\)[^\n]* in crashes.so\n"));
    EXPECT_THAT(details, ContainsRegex("#[12] [^\n]*onName\\(char[^\n]* in crashes.so\n"));
}

TEST(CheckTest, ACrashTellsTheFormOfTheEvent) {
    EXPECT_THAT(detailsOf(check(fixture("needs_record"), PATIENT), "crash"),
                AllOf(HasSubstr("SIGABRT"),
                      HasSubstr("during the delivery of bt-device-bond-created present=false\n"),
                      HasSubstr("onBond")));
    EXPECT_THAT(detailsOf(check(fixture("needs_services"), PATIENT), "crash"),
                AllOf(HasSubstr("SIGSEGV"),
                      HasSubstr("during the delivery of bt-device-bond-created "
                                "service_uuid= service_count=3\n"),
                      HasSubstr("onBond")));
}

TEST(CheckTest, AnExceptionIsNamedWithItsClassAndText) {
    EXPECT_EQ(detailsOf(check(fixture("init_throws_runtime_error"), PATIENT), "init-exception"),
              "std::runtime_error: from init\n");
    EXPECT_EQ(detailsOf(check(fixture("deinit_throws_int"), PATIENT), "deinit-exception"),
              "int, which isn't derived from std::exception\n");
    EXPECT_THAT(detailsOf(check(fixture("callback_throws"), PATIENT), "callback-exception"),
                HasSubstr("bt-adapter-state-changed: std::runtime_error: from a callback\n"));
    EXPECT_THAT(detailsOf(check(fixture("thread_throws"), PATIENT), "uncaught-exception"),
                AllOf(HasSubstr("std::runtime_error: from a thread\n"),
                      HasSubstr(" in thread_throws.so\n")));
}

TEST(CheckTest, AHangIsEndedAfterTheLimitAndNamed) {
    const auto details = detailsOf(check(fixture("hangs"), {"--timeout", "3"}), "hang");
    EXPECT_THAT(details, HasSubstr("during the delivery of bt-adapter-name-changed\n"));
    // ThreadSanitizer delays the signal that requests the stack.
    if (SANITIZER != std::string("thread")) {
        EXPECT_THAT(details, HasSubstr("onName"));
    }
}

TEST(CheckTest, ADroppedTaskThatCallsTheBrokerIsNamedWithItsPlace) {
    const auto details = detailsOf(check(fixture("requests_when_destroyed"), {"--timeout", "5"}),
                                   "dropped-task-hang");
    EXPECT_THAT(details, HasSubstr("during the dropping of tasks requested in the callback of "
                                   "bt-adapter-name-changed\n"));
    // ThreadSanitizer delays the signal that requests the stack.
    if (SANITIZER != std::string("thread")) {
        EXPECT_THAT(details, ContainsRegex("Requester::~Requester\\(\\)"));
    }
}

TEST(CheckTest, LeftoversAreNamed) {
    EXPECT_EQ(detailsOf(check(fixture("leaves_subscription"), PATIENT), "leftover-subscriptions"),
              "SoundManagerSetSpeakerChangedCb without SoundManagerUnetSpeakerChangedCb\n");
    EXPECT_EQ(detailsOf(check(fixture("leaves_profile"), PATIENT), "leftover-profiles"),
              "BtAvrcpTargetInitialize without BtAvrcpTargetDeinitialize\n");
    const auto threads = detailsOf(check(fixture("leaves_thread"), PATIENT), "leftover-threads");
    EXPECT_THAT(threads, ContainsRegex("^thread [0-9]+ \"[^\n]*\"\n"));
    // ThreadSanitizer delays the signal that requests the stack.
    if (SANITIZER != std::string("thread")) {
        EXPECT_THAT(threads, HasSubstr("PLUGIN_INIT::{lambda()#1}"));
    }
}

TEST(CheckTest, TheLogIsShownOnDemand) {
    const auto result = runTool({"check", "--log", PLUGIN_DIRECTORY "/libadapter-watch.so"});
    EXPECT_THAT(result.errors, HasSubstr("I ADAPTER_WATCH: the adapter is on"));
    EXPECT_THAT(runTool({"check", PLUGIN_DIRECTORY "/libadapter-watch.so"}).errors, IsEmpty());
}

TEST(CheckTest, ControlCharactersOfThePluginAreEscaped) {
    const auto text = runTool({"check", "--log", fixture("control_characters")});
    EXPECT_THAT(text.output, HasSubstr("std::runtime_error: gr\303\274n \\x1b[31m\\x7f \\xc2\\x9b "
                                       "\\xe2\\x80\\xae \357\277\275 line\\x0d\\x0anext\n"));
    EXPECT_THAT(text.output + text.errors, AllOf(Not(HasSubstr("\033")), Not(HasSubstr("\007"))));
    EXPECT_THAT(text.errors, HasSubstr("logged \\x1b]0;title\\x07\\xff\n"));
    const auto json = runTool({"check", "--json", fixture("control_characters")}).output;
    EXPECT_THAT(json, HasSubstr("gr\\u00fcn \\u001b[31m\\u007f \\u009b \\u202e \\ufffd line"));
}

TEST(CheckTest, NothingIsLeftInTheTemporaryDirectory) {
    std::string directory = testing::TempDir() + "corvane-XXXXXX";
    ASSERT_NE(mkdtemp(directory.data()), nullptr);
    for (const std::string name : {"clean", "crashes", "hangs"}) {
        runTool({"check", fixture(name), "--timeout", "1"}, {{"TMPDIR", directory}});
    }
    EXPECT_TRUE(fs::is_empty(directory));
    fs::remove_all(directory);
}

}  // namespace
