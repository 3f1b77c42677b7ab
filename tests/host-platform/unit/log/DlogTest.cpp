// Tests the platform log: line layout, formats, lengths, priorities and streams that fail.
#include <dlog.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cerrno>
#include <climits>
#include <cstdio>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "tests/support/process/ChildProcess.h"

namespace {

using testing::HasSubstr;
using testing::MatchesRegex;

constexpr const char* LINE_START = "[0-9][0-9]:[0-9][0-9]:[0-9][0-9]\\.[0-9]+ [0-9]+ ";

template <typename Log>
std::string logged(Log log) {
    testing::internal::CaptureStderr();
    log();
    return testing::internal::GetCapturedStderr();
}

ChildProcess::Result runLogProgram(const std::string& what, const std::string& level = "") {
    return ChildProcess::run({{LOG_PROGRAM, what}, {}, {{"CORVANE_LOG_LEVEL", level}}});
}

TEST(DlogTest, WritesTimeThreadPriorityTagAndText) {
    const auto line = logged([] { dlog_print(DLOG_PRIORITY_INFO, "QVX", "answer %d", 42); });
    EXPECT_THAT(line, MatchesRegex(std::string(LINE_START) + "I QVX: answer 42\n"));
}

TEST(DlogTest, NamesEachPriorityByItsLetter) {
    for (const auto& [priority, letter] :
         {std::pair{3, 'D'}, {4, 'I'}, {5, 'W'}, {6, 'E'}, {7, '?'}}) {
        const auto line = logged([&, p = priority] { __dlog_print(0, p, "T", "x"); });
        EXPECT_THAT(line, HasSubstr(std::string(" ") + letter + " T: x\n"));
    }
}

TEST(DlogTest, StripsOneTrailingNewlineAndReturnsTheSizeOfTheText) {
    int result = 0;
    const auto line = logged([&] { result = dlog_print(4, "T", "text\n"); });
    EXPECT_THAT(line, testing::EndsWith("T: text\n"));
    EXPECT_EQ(result, 5);
}

TEST(DlogTest, KeepsARecordWithControlCharactersOnOneLine) {
    const auto line = logged([] { dlog_print(4, "T", "%s", "a\nb\tc\x1b[1md\n\n"); });
    EXPECT_THAT(line, testing::EndsWith("T: a b\tc [1md \n"));
}

TEST(DlogTest, ReplacesAControlCharacterAtAnyPlace) {
    std::vector<std::string> texts;
    std::istringstream lines(logged([&] {
        for (std::size_t size = 1; size <= 24; ++size) {
            for (std::size_t place = 0; place < size; ++place) {
                std::string text(size, 'x');
                text[place] = '\x7f';
                dlog_print(4, "T", "%s", text.c_str());
                text[place] = ' ';
                texts.push_back(text);
            }
        }
    }));
    std::string line;
    for (const std::string& text : texts) {
        std::getline(lines, line);
        EXPECT_THAT(line, testing::EndsWith(" I T: " + text));
    }
    EXPECT_THAT(logged([] { dlog_print(4, "\n2:", "x"); }), testing::EndsWith(" I  2:: x\n"));
}

// These are U+0080 to U+009F. A terminal may interpret U+009B as the start of a control sequence.
TEST(DlogTest, ReplacesControlCharactersOfTwoBytesAndKeepsOtherLetters) {
    const auto cleaned = [](const std::string& text) {
        const auto line = logged([&] { dlog_print(4, "T", "%s", text.c_str()); });
        return line.substr(line.find("T: ") + 3);
    };
    EXPECT_EQ(cleaned("a\xc2\x9b"
                      "2J\xc2\x80\xc2\x9f!"),
              "a  2J    !\n");
    const std::string letters = "\xc2\xa0 \xc3\x80 \xd0\x90 \xe2\x82\x9b \xf0\x9f\x98\x80";
    EXPECT_EQ(cleaned(letters), letters + '\n');
    // Invalid UTF-8, which some terminals interpret byte by byte, and overlong encodings.
    EXPECT_EQ(cleaned("\x9b"
                      "1m \xe9\x9b"
                      "x \xc3"),
              " 1m \xe9 x \xc3\n");
    EXPECT_EQ(cleaned("\xe0\x82\x9b \xf0\x80\x82\x9b \xc0\x9b"), "\xe0   \xf0    \xc0 \n");
}

TEST(DlogTest, WritesEmptyTextsAndMissingTags) {
    EXPECT_THAT(logged([] { dlog_print(4, "T", "%s", ""); }), testing::EndsWith(" I T: \n"));
    EXPECT_THAT(logged([] { dlog_print(4, nullptr, "x"); }), testing::EndsWith(" I : x\n"));
}

TEST(DlogTest, RefusesAMissingFormat) {
    const char* const missing = nullptr;
    const auto line = logged([&] { EXPECT_LT(dlog_print(4, "T", missing, 0), 0); });
    EXPECT_EQ(line, "");
}

// Expects the log to contain the same text as snprintf() writes. The format is a parameter because
// the compiler checks constant formats.
template <typename... Arguments>
void expectTextOfTheCLibrary(const char* format, Arguments... arguments) {
    char text[200];
    const int size = std::snprintf(text, sizeof text, format, arguments...);
    const auto line =
        logged([&] { EXPECT_EQ(dlog_print(4, "T", format, arguments...), size) << format; });
    EXPECT_THAT(line, testing::EndsWith(std::string(" I T: ") + text + '\n'));
}

TEST(DlogTest, TakesEveryFormatOfTheCLibrary) {
    static const int object = 0;
    expectTextOfTheCLibrary("%s : %s(%d) [%p] > 100 %%", "TPLContext.h", "InvokeTask", 1, &object);
    expectTextOfTheCLibrary("%s %p", static_cast<const char*>(nullptr), nullptr);
    expectTextOfTheCLibrary("%d %5d|%-5d|%05d|%+d", INT_MIN, 1, 2, 3, 4);
    expectTextOfTheCLibrary("%.2s %*d", "cut", 4, 5);
    expectTextOfTheCLibrary("%ld %llu %zu %x %#x %c", 2L, 3ULL, std::size_t{4}, 5U, 6U, '7');
    expectTextOfTheCLibrary("%s %f %g %a", "first", 1.5, 2.5, 3.5);
    expectTextOfTheCLibrary("%2$s %1$s", "first", "second");
}

TEST(DlogTest, RefusesAFormatThatTheCLibraryRefuses) {
    const std::string cutOff = "%s %";  // the compiler would refuse a constant
    EXPECT_EQ(logged([&] { EXPECT_LT(dlog_print(4, "T", cutOff.c_str(), "x"), 0); }), "");
}

TEST(DlogTest, WritesALineOfAnyLengthInFull) {
    for (std::size_t size = 900; size < 1100; ++size) {
        const std::string text(size, 'x');
        const auto line = logged([&] { dlog_print(4, "T", "%s", text.c_str()); });
        EXPECT_THAT(line, testing::EndsWith("T: " + text + '\n')) << size;
    }
    const std::string text(200000, 'y');
    const std::string tag(3000, 't');
    const auto line = logged([&] { dlog_print(4, tag.c_str(), "%s", text.c_str()); });
    EXPECT_THAT(line, testing::EndsWith(' ' + tag + ": " + text + '\n'));
}

TEST(DlogTest, LeavesErrnoAloneAndPrintsIt) {
    errno = ENOENT;
    const auto line = logged([] { dlog_print(4, "T", "%m"); });
    EXPECT_EQ(errno, ENOENT);
    EXPECT_THAT(line, testing::EndsWith("No such file or directory\n"));
}

TEST(DlogStreamTest, DoesNotBlockAChildThatIsForkedWithinALine) {
    EXPECT_EQ(runLogProgram("fork-within-a-line").status, 0);
}

TEST(DlogLevelTest, WritesEverythingByDefault) {
    const auto result = runLogProgram("priorities");
    EXPECT_EQ(std::count(result.errors.begin(), result.errors.end(), '\n'), 4);
}

TEST(DlogLevelTest, LeavesOutWhatIsBelowTheLevel) {
    for (const std::string level : {"warning", "5"}) {
        const auto result = runLogProgram("priorities", level);
        EXPECT_EQ(std::count(result.errors.begin(), result.errors.end(), '\n'), 2);
        EXPECT_THAT(result.errors, HasSubstr("W TEST: priority 5\n"));
        EXPECT_THAT(result.errors, HasSubstr("E TEST: priority 6\n"));
    }
}

TEST(DlogLevelTest, ReportsABadLevelOnceAndWritesEverything) {
    const auto result = runLogProgram("priorities", "loud");
    EXPECT_EQ(std::count(result.errors.begin(), result.errors.end(), '\n'), 5);
    EXPECT_THAT(result.errors.substr(0, result.errors.find('\n')),
                MatchesRegex(std::string(LINE_START) +
                             "E SETTINGS: CORVANE_LOG_LEVEL: level is \"loud\"; it must be debug, "
                             "info, warning, error or 3 to 6"));
}

TEST(DlogStreamTest, SurvivesAPipeWithoutAReader) {
    const auto result = runLogProgram("closed-pipe");
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.output, "result negative, SIGPIPE not pending\n");
}

TEST(DlogStreamTest, SurvivesAFullDevice) {
    EXPECT_EQ(runLogProgram("full-device").output, "result negative, SIGPIPE not pending\n");
}

TEST(DlogStreamTest, SurvivesAClosedStandardErrorAndLeavesItsNumberToOthers) {
    EXPECT_EQ(runLogProgram("closed").status, 0);
}

TEST(DlogStreamTest, StartsANewLineAfterOneThatWasCutOff) {
    const auto result = runLogProgram("cut-off");
    const auto end = result.output.find('\n');
    ASSERT_NE(end, std::string::npos) << result.output.size();
    EXPECT_THAT(result.output.substr(0, end), testing::EndsWith("xxx"));
    EXPECT_THAT(result.output.substr(end + 1),
                MatchesRegex(std::string(LINE_START) + "I TEST: after\n"));
}

}  // namespace
