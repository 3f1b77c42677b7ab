// The platform log in a file: what a line waits for, and that no end of the process loses it.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <signal.h>

#include <fstream>
#include <map>
#include <string>
#include <vector>

#include "tests/host-platform/unit/settings/SettingsFixture.h"
#include "tests/support/process/ChildProcess.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class DlogFileTest : public SettingsFixture {
protected:
    void keepLinesFor(const std::string& milliseconds) {
        write("[log]\noutput = file\nfile = " + file() + "\nflush_ms = " + milliseconds + '\n');
    }

    int run(const std::string& what) {
        return ChildProcess::run({{LOG_FILE_PROGRAM, what, file()}}).status;
    }

    std::vector<std::string> texts() {
        std::vector<std::string> result;
        std::ifstream stream(file());
        for (std::string line; std::getline(stream, line);) {
            result.push_back(line.substr(line.find("TEST: ") + 6));
        }
        return result;
    }

    static constexpr const char* forAMinute = "60000";

private:
    std::string file() const { return directory() / "log"; }
};

TEST_F(DlogFileTest, ALineIsInTheFileWhenItsTimeHasCome) {
    keepLinesFor("50");
    EXPECT_EQ(run("in-time"), 0);
    EXPECT_THAT(texts(), ElementsAre("there at once", "waits"));
}

TEST_F(DlogFileTest, ALineThatMayNotWaitIsInTheFileAtOnce) {
    keepLinesFor("0");
    EXPECT_EQ(run("no-end"), 0);
    EXPECT_THAT(texts(), ElementsAre("before"));
}

TEST_F(DlogFileTest, AnEndThatNobodyIsToldOfLosesWhatWaits) {
    keepLinesFor(forAMinute);
    EXPECT_EQ(run("no-end"), 0);
    EXPECT_THAT(texts(), IsEmpty());
}

TEST_F(DlogFileTest, AnErrorIsInTheFileAtOnceWithAllBeforeIt) {
    keepLinesFor(forAMinute);
    EXPECT_EQ(run("error"), 0);
    EXPECT_THAT(texts(), ElementsAre("before", "error"));
}

TEST_F(DlogFileTest, TheEndOfTheProcessLosesNothingEvenOfWhatRunsLater) {
    keepLinesFor(forAMinute);
    EXPECT_EQ(run("end"), 0);
    EXPECT_THAT(texts(), ElementsAre("before", "later"));
}

TEST_F(DlogFileTest, AnAbortLosesNothing) {
    keepLinesFor(forAMinute);
    EXPECT_EQ(run("abort"), -SIGABRT);
    EXPECT_THAT(texts(), ElementsAre("before"));
}

// The sanitizers handle these themselves.
#if !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__)
TEST_F(DlogFileTest, AFaultLosesNothingAndEndsTheProcessAsEver) {
    keepLinesFor(forAMinute);
    EXPECT_EQ(run("fault"), -SIGSEGV);
    EXPECT_THAT(texts(), ElementsAre("before"));
}

TEST_F(DlogFileTest, ASignalThatSomebodySendsLosesNothingAndEndsTheProcessAsEver) {
    keepLinesFor(forAMinute);
    EXPECT_EQ(run("signal"), -SIGBUS);
    EXPECT_THAT(texts(), ElementsAre("before"));
}
#endif

TEST_F(DlogFileTest, AChildWritesNoLineOfItsParent) {
    keepLinesFor("500");
    EXPECT_EQ(run("fork"), 0);
    EXPECT_THAT(texts(), testing::UnorderedElementsAre("there at once", "waits", "before", "child",
                                                       "after"));
}

TEST_F(DlogFileTest, LinesOfSeveralThreadsAreWholeHoweverLong) {
    keepLinesFor("1");
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

}  // namespace
