// The completion of the command in bash, by bash itself.
#include "ChildProcess.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <sstream>
#include <string>
#include <vector>

namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

// What the shell would offer for the line, with the cursor at its end.
std::vector<std::string> completionsOf(const std::string& line) {
    const auto result = ChildProcess::run(
        {{"bash", "-c",
          "PATH=" + std::filesystem::path(TOOL).parent_path().string() +
              ":$PATH; source " COMPLETION "; COMP_LINE=$1; COMP_POINT=${#COMP_LINE}; _corvane; "
              "for word in \"${COMPREPLY[@]}\"; do echo \"$word\"; done",
          "bash", line}});
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.errors, "");
    std::vector<std::string> words;
    std::istringstream lines(result.output);
    for (std::string word; std::getline(lines, word);) {
        words.push_back(word);
    }
    return words;
}

TEST(CompletionTest, OffersSubcommands) {
    EXPECT_THAT(completionsOf("corvane "), ElementsAre("list", "emit", "watch", "play", "new",
                                                       "check", "order", "--socket", "--help"));
    EXPECT_THAT(completionsOf("corvane --socket /tmp/x wa"), ElementsAre("watch"));
    EXPECT_THAT(completionsOf("corvane list --"), ElementsAre("--json", "--help"));
    EXPECT_THAT(completionsOf("corvane new my-plugin --"), ElementsAre("--dir", "--help"));
    EXPECT_THAT(completionsOf("corvane order --"), ElementsAre("--json", "--help"));
    EXPECT_THAT(completionsOf("corvane check --s"), ElementsAre("--static-only", "--slow-ms"));
}

TEST(CompletionTest, OffersEvents) {
    EXPECT_THAT(completionsOf("corvane emit "), SizeIs(42));
    EXPECT_THAT(completionsOf("corvane emit sound-manager-m"),
                ElementsAre("sound-manager-multiview-speaker-changed"));
}

TEST(CompletionTest, OffersArgumentsAndFieldsOfRecords) {
    EXPECT_THAT(completionsOf("corvane emit bt-socket-data-received "),
                ElementsAre("socket_fd=", "data="));
    EXPECT_THAT(completionsOf("corvane emit bt-nothing "), IsEmpty());
}

TEST(CompletionTest, OffersValues) {
    EXPECT_THAT(completionsOf("corvane emit bt-adapter-state-changed result=0 state="),
                ElementsAre("off", "on"));
    EXPECT_THAT(completionsOf("corvane emit bt-device-connection-state-changed connected=t"),
                ElementsAre("true"));
    EXPECT_THAT(completionsOf("corvane emit bt-adapter-name-changed name="), IsEmpty());
}

TEST(CompletionTest, OffersFiles) {
    const auto file = std::filesystem::path(TOOL);
    for (const std::string command : {"play ", "order ", "check "}) {
        EXPECT_THAT(completionsOf("corvane " + command + file.string()), Contains(file.string()));
    }
}

}  // namespace
