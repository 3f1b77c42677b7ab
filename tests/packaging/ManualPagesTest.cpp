// Tests of the manual pages: they have no formatting error, and corvane(1) describes every
// subcommand.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fstream>
#include <iterator>
#include <sstream>
#include <string>
#include <vector>

#include "tests/support/process/ChildProcess.h"

namespace {

using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

class ManualPageTest : public testing::TestWithParam<const char*> {};

TEST_P(ManualPageTest, HasNoMistake) {
    const auto lint = ChildProcess::run({.command = {"mandoc", "-T", "lint", "-W", "warning",
                                                     PAGES "/" + std::string(GetParam())}});
    EXPECT_EQ(lint.status, 0) << lint.output << lint.errors;
}

INSTANTIATE_TEST_SUITE_P(Pages, ManualPageTest, testing::Values("corvaned.8", "corvane.1"),
                         [](const auto& page) {
                             std::string name = page.param;
                             return name.substr(0, name.find('.'));
                         });

// Returns the names in the first column below "Subcommands:" in the output of `corvane --help`.
std::vector<std::string> subcommands() {
    const auto help = ChildProcess::run({.command = {TOOL, "--help"}});
    std::istringstream lines(help.output);
    std::vector<std::string> names;
    bool reached = false;
    for (std::string line; std::getline(lines, line);) {
        std::string word;
        if (reached && line.starts_with("  ") && line[2] != ' ' &&
            std::istringstream(line) >> word) {
            names.push_back(word);
        } else {
            reached = line == "Subcommands:";
        }
    }
    return names;
}

TEST(CommandsPageTest, HasASectionForEverySubcommand) {
    std::ifstream input(PAGES "/corvane.1");
    const std::string page(std::istreambuf_iterator<char>(input), {});
    const auto names = subcommands();
    ASSERT_THAT(names, Not(IsEmpty()));
    for (const auto& name : names) {
        EXPECT_THAT(page, HasSubstr("\n.Ss " + name + '\n'));
        EXPECT_THAT(page, HasSubstr("\n.Nm\n.Cm " + name + '\n'));
    }
}

}  // namespace
