// Tests the bash completion of `corvane` in a real bash.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include "tests/support/process/ChildProcess.h"
#include "tests/support/process/TemporaryDirectory.h"

namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

// Returns the completions that bash offers for the line, with the cursor at its end.
std::vector<std::string> completionsOf(const std::string& line) {
    const auto result = ChildProcess::run(
        {{"bash", "-c",
          "PATH=" + fs::path(TOOL).parent_path().string() +
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

// Completes unusual file names in a temporary directory. There, `corvane` is a shell function that
// prints each of its arguments in angle brackets.
class FileCompletionTest : public testing::Test {
protected:
    FileCompletionTest() {
        std::ofstream(m_directory / "rc") << "source " COMPLETION "\n"
                                          << "corvane() { printf '<%s>' \"$@\"; }\n";
        std::ofstream(m_directory / "a;touch pwned");
        fs::create_directory(m_directory / "d (1) $HOME");
        std::ofstream(m_directory / "d (1) $HOME" / "plugin.so");
    }

    // Returns the output of an interactive bash that receives these keys.
    std::string typed(const std::string& keys) const {
        const auto result = ChildProcess::run(
            {{"bash", "-c",
              "printf %s \"$1\" | script -qec 'bash --noprofile --rcfile rc -i' /dev/null", "bash",
              keys + "\nexit\n"},
             m_directory,
             {{"TERM", "dumb"}, {"INPUTRC", "/dev/null"}}});
        EXPECT_EQ(result.status, 0) << result.output << result.errors;
        return result.output;
    }

    TemporaryDirectory m_temporary;
    const fs::path m_directory = m_temporary.path();
};

TEST_F(FileCompletionTest, QuotesWhatTheShellWouldTakeForSyntax) {
    for (const std::string command : {"play", "order", "check", "--socket"}) {
        EXPECT_THAT(typed("corvane " + command + " a\t"),
                    HasSubstr('<' + command + "><a;touch pwned>"));
        EXPECT_FALSE(fs::exists(m_directory / "pwned")) << command;
    }
}

TEST_F(FileCompletionTest, GoesOnInADirectoryWithBlanksInItsName) {
    EXPECT_THAT(typed("corvane check d\tp\t"), HasSubstr("<check><d (1) $HOME/plugin.so>"));
}

}  // namespace
