// Tests the platform log of a separate process, in a file and on the standard error. Lines are
// never split, and no line is lost, however the process ends.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <signal.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "tests/host-platform/unit/settings/SettingsFixture.h"
#include "tests/support/process/ChildProcess.h"

namespace {

using testing::ElementsAre;

class DlogFileTest : public SettingsFixture, public testing::WithParamInterface<const char*> {
protected:
    // Runs the log program and stores its log. Returns the exit status, or minus the number of the
    // signal that ended the program.
    int run(const std::string& what) {
        const std::string file = directory() / "log";
        std::filesystem::remove(file);
        write(std::string("[log]\noutput = ") + GetParam() + "\nfile = " + file + '\n');
        const auto result = ChildProcess::run({{LOG_PROGRAM, what}});
        std::ifstream stream(file);
        m_log = std::string(std::istreambuf_iterator<char>(stream), {}) + result.errors;
        return result.status;
    }

    std::vector<std::string> texts() const {
        std::vector<std::string> result;
        std::istringstream stream(m_log);
        for (std::string line; std::getline(stream, line);) {
            const auto start = line.find("TEST: ");
            result.push_back(start == line.npos ? line : line.substr(start + 6));
        }
        return result;
    }

private:
    std::string m_log;
};

TEST_P(DlogFileTest, HasTheLineOfAProcessThatIsKilled) {
    EXPECT_EQ(run("kill"), -SIGKILL);
    EXPECT_THAT(texts(), ElementsAre("before"));
}

TEST_P(DlogFileTest, HasTheLineOfAProcessThatEndsWithoutExitHandlers) {
    EXPECT_EQ(run("exit"), 0);
    EXPECT_THAT(texts(), ElementsAre("before"));
}

TEST_P(DlogFileTest, HasTheLineOfAProcessThatAborts) {
    EXPECT_EQ(run("abort"), -SIGABRT);
    EXPECT_THAT(texts(), ElementsAre("before"));
}

// The sanitizers handle these signals themselves.
#if !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__)
TEST_P(DlogFileTest, DoesNotChangeHowASignalEndsTheProcess) {
    for (const auto& [what, number] : {std::pair{"signal", SIGBUS}, {"fault", SIGSEGV}}) {
        EXPECT_EQ(run(what), -number);
        EXPECT_THAT(texts(), ElementsAre("before"));
    }
}
#endif

TEST_P(DlogFileTest, HasTheLinesOfExitHandlers) {
    EXPECT_EQ(run("at-exit"), 0);
    EXPECT_THAT(texts(), ElementsAre("before", "later"));
}

TEST_P(DlogFileTest, HasEachLineOfAParentAndItsChildOnce) {
    EXPECT_EQ(run("child"), 0);
    EXPECT_THAT(texts(), ElementsAre("before", "child", "after"));
}

TEST_P(DlogFileTest, HasWholeLinesOfSeveralThreadsHoweverLong) {
    EXPECT_EQ(run("threads"), 0);
    std::map<char, std::vector<std::size_t>> sizes;
    for (const std::string& text : texts()) {
        ASSERT_EQ(text, std::string(text.size(), text[0]));
        sizes[text[0]].push_back(text.size());
    }
    ASSERT_EQ(sizes.size(), 4U);
    for (const auto& [letter, found] : sizes) {
        ASSERT_EQ(found.size(), 100U);
        for (std::size_t line = 0; line < found.size(); ++line) {
            EXPECT_EQ(found[line], line == 50      ? 100000
                                   : line % 2 == 0 ? 8000
                                                   : 10)
                << letter << line;
        }
    }
}

INSTANTIATE_TEST_SUITE_P(All, DlogFileTest, testing::Values("file", "stderr"),
                         [](const auto& parameter) { return std::string(parameter.param); });

}  // namespace
