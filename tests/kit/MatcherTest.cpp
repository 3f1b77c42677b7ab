// Tests of the matchers and of the text that a failed expectation prints.
#include <corvane/testkit.h>
#include <dlog.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

using namespace corvane::testkit;
using testing::AllOf;
using testing::DescribeMatcher;
using testing::Not;
using testing::PrintToString;

const LogLine LINE{DLOG_PRIORITY_WARNING, "MY_PLUGIN", "the adapter is on"};

TEST(MatcherTest, MatchesPartsOfALogLine) {
    EXPECT_THAT(LINE, AllOf(HasText("adapter is"), HasTag("MY_PLUGIN"),
                            HasPriority(DLOG_PRIORITY_WARNING)));
    EXPECT_THAT(LINE, Not(HasText("adapter is off")));
    EXPECT_THAT(LINE, Not(HasTag("PLUGIN")));
    EXPECT_THAT(LINE, Not(HasPriority(DLOG_PRIORITY_ERROR)));
}

TEST(MatcherTest, PrintsALogLine) {
    EXPECT_EQ(PrintToString(LINE), "W/MY_PLUGIN: the adapter is on");
    EXPECT_EQ(PrintToString(LogLine{9, "T", ""}), "9/T: ");
}

TEST(MatcherTest, PrintsLeftovers) {
    EXPECT_EQ(PrintToString(Leftovers{}), "nothing");
    EXPECT_THAT(PrintToString(Leftovers{{"a", "b"}, true}),
                testing::StartsWith("still subscribed to a, b; the library stays"));
    EXPECT_EQ(DescribeMatcher<Leftovers>(LeavesNothingBehind()), "leaves nothing behind");
}

}  // namespace
