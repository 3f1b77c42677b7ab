// Tests `corvane play` with a running daemon.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fstream>
#include <string>

#include "tests/support/process/HostFixture.h"

namespace {

using testing::HasSubstr;

class PlayTest : public HostFixture {
protected:
    void SetUp() override { startDaemon(DIRECTED_PLUGIN); }

    std::string file() const { return directory() / "scenario"; }

    ChildProcess::Result play(const std::string& text) const {
        std::ofstream(file()) << text;
        return tool({"play", file()});
    }
};

TEST_F(PlayTest, PlaysAllKindsOfSteps) {
    const auto result = play(R"(# the plugin does as it is told
expect bt-adapter-name-changed set
expect sound-manager-speaker-changed unset
emit bt-adapter-name-changed name=subscribe
expect sound-manager-speaker-changed set within 5000
repeat 3
  emit sound-manager-speaker-changed route=hdmi  # thrice
  wait 1
end
expect sound-manager-speaker-changed delivered 3
expect sound-manager-speaker-changed delivered 0
expect bt-adapter-name-changed delivered 1 within 5000
)");
    EXPECT_EQ(result.status, 0) << result.errors;
    EXPECT_EQ(result.errors, "");
    const auto third = file() + ":7: sound-manager-speaker-changed: delivered to 1 callback\n";
    EXPECT_EQ(result.output, file() + ":4: bt-adapter-name-changed: delivered to 1 callback\n" +
                                 third + third + third + "all expectations held: 6\n");
}

TEST_F(PlayTest, GoesOnBehindExpectationsThatFailAndTellsOfAll) {
    const auto result = play(
        "emit bt-adapter-name-changed\n"
        "expect bt-adapter-name-changed delivered 2 within 1\n"
        "expect bt-adapter-name-changed unset\n"
        "expect sound-manager-speaker-changed set within 1\n"
        "expect bt-adapter-name-changed set\n");
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.errors,
              file() +
                  ":2: bt-adapter-name-changed: expected to be delivered 2 times, but it "
                  "was 1 times\n" +
                  file() + ":3: bt-adapter-name-changed: expected not to be set, but it is\n" +
                  file() +
                  ":4: sound-manager-speaker-changed: expected to be set, but it is not\n"
                  "corvane: 3 of 4 expectations failed\n");
}

TEST_F(PlayTest, RefusesAScenarioWithAMistakeAsAWhole) {
    const auto result = play("emit bt-adapter-name-changed\nemit bt-adapter-state-changed a=b\n");
    EXPECT_EQ(result.status, 2);
    EXPECT_EQ(result.output, "");
    EXPECT_EQ(result.errors, "corvane: " + file() +
                                 ":2: bt-adapter-state-changed has no argument \"a\"; its "
                                 "arguments are result, state\n");
}

TEST_F(PlayTest, ReadsTheStandardInput) {
    const auto result =
        runAnyhow({"sh", "-c",
                   "echo 'emit bt-adapter-name-changed name=\"a b\"' | " TOOL " --socket " +
                       socket().string() + " play -"});
    EXPECT_EQ(result.status, 0) << result.errors;
    EXPECT_THAT(result.output,
                HasSubstr("standard input:1: bt-adapter-name-changed: delivered to 1 callback"));
}

TEST_F(PlayTest, NamesAFileThatCannotBeRead) {
    const auto result = tool({"play", "/nonexistent/scenario"});
    EXPECT_EQ(result.status, 2);
    EXPECT_EQ(result.errors, "corvane: /nonexistent/scenario can't be read\n");
}

}  // namespace
