// Tests that a plugin's process can't disturb the check with malformed results, endless output or
// child processes that it leaves running.
#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <signal.h>
#include <stdlib.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cstddef>
#include <filesystem>
#include <string>

#include "tests/tools/check/RunTool.h"

namespace {

namespace fs = std::filesystem;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

ChildProcess::Result checkWith(const std::string& name, const std::string& variable,
                               const std::string& value) {
    return runTool({"check", fixture(name), "--slow-ms", "10000"}, {{variable, value}});
}

TEST(CheckedProcessTest, MoreResultsThanAPluginCanHaveEndTheCheck) {
    const auto result = runTool({"check", fixture("floods_results"), "--timeout", "60"});
    EXPECT_EQ(result.status, 2);
    EXPECT_EQ(result.errors,
              "corvane: the check failed: the plugin's process sent more than 4 MiB of results\n");
}

TEST(CheckedProcessTest, AResultWithoutEndEndsTheCheck) {
    const auto result = runTool({"check", fixture("endless_result"), "--timeout", "60"});
    EXPECT_EQ(result.status, 2);
    EXPECT_THAT(result.errors, StartsWith("corvane: the check failed: a result of the plugin's "
                                          "process is malformed: xxx"));
}

class MalformedResultTest : public testing::TestWithParam<const char*> {};

TEST_P(MalformedResultTest, EndsTheCheckWithStatus2) {
    const auto result = checkWith("sends_result", "FIXTURE_RESULT", GetParam());
    EXPECT_EQ(result.status, 2) << result.output;
    EXPECT_THAT(result.errors,
                StartsWith("corvane: the check failed: a result of the plugin's process is "
                           "malformed: "));
    EXPECT_THAT(result.errors, Not(HasSubstr("\033")));
}

INSTANTIATE_TEST_SUITE_P(All, MalformedResultTest,
                         testing::Values("no JSON \033[2J", "[]", R"({"unknown":1})",
                                         R"({"finding":"nothing-known","detail":""})",
                                         R"({"finding":"crash"})", R"({"step":1,"thread":"x"})",
                                         R"({"signal":"x","thread":1,"frames":[]})",
                                         R"({"signal":11,"thread":1,"frames":["x"]})",
                                         R"({"fact":"jobs","value":"x"})",
                                         R"({"fact":"unknown","value":1})"));

// Returns true when all processes have closed the FIFO for writing, or false after 10 s.
bool endsInTime(int fifo) {
    std::array<char, 64> buffer;
    pollfd waiting{fifo, POLLIN, 0};
    while (poll(&waiting, 1, 10000) > 0) {
        if (read(fifo, buffer.data(), buffer.size()) <= 0) {
            return true;
        }
    }
    return false;
}

TEST(CheckedProcessTest, NoProcessSurvivesTheCheckNotEvenInASessionOfItsOwn) {
    std::string directory = testing::TempDir() + "corvane-XXXXXX";
    ASSERT_NE(mkdtemp(directory.data()), nullptr);
    const auto path = directory + "/fifo";
    ASSERT_EQ(mkfifo(path.c_str(), 0600), 0);
    const int fifo = open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
    const auto result = checkWith("leaves_process", "FIXTURE_FIFO", path);
    std::array<char, 64> number{};
    const auto size = read(fifo, number.data(), number.size() - 1);
    EXPECT_GT(size, 0) << result.output << result.errors;
    if (size > 0 && !endsInTime(fifo)) {
        ADD_FAILURE() << "a process is left: " << number.data();
        kill(std::atoi(number.data()), SIGKILL);
    }
    close(fifo);
    fs::remove_all(directory);
}

TEST(CheckedProcessTest, AChildThatTheCommandHadBeforeIsLeftAlone) {
    const auto result =
        ChildProcess::run({{"bash", "-c", "sleep 1000 >/dev/null 2>&1 & echo $!; exec \"$@\"",
                            "bash", TOOL, "check", fixture("clean"), "--slow-ms", "10000"},
                           {},
                           {{"CORVANE_PLATFORM_CONF", "/dev/null"}}},
                          std::chrono::seconds(60));
    EXPECT_EQ(result.status, 0) << result.output << result.errors;
    EXPECT_EQ(kill(std::stoi(result.output), SIGKILL), 0) << "it was ended by the check";
}

TEST(CheckedProcessTest, OutputWithoutEndIsNamedWithItsPlace) {
    const auto details =
        detailsOf(check(fixture("floods_output"), {"--slow-ms", "10000"}), "crash");
    EXPECT_THAT(details, HasSubstr("SIGXFSZ (File size limit exceeded)\n"
                                   "during the delivery of bt-adapter-name-changed\n"));
    EXPECT_THAT(details, HasSubstr("onName"));
}

TEST(CheckedProcessTest, TheLogIsTheEndOfTheOutput) {
    const auto result = runTool(
        {"check", "--log", fixture("floods_output"), "--slow-ms", "10000", "--timeout", "60"});
    EXPECT_EQ(result.errors.size(), std::size_t{16} << 20);
}

}  // namespace
