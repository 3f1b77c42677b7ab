// The format of the daemon's log lines, and the class that traces scopes.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <stdexcept>
#include <string>
#include <string_view>

#include "daemon/src/common/log.h"
#include "tests/support/FakePlatform.h"

using testing::ElementsAre;

namespace {

class LogTest : public testing::Test {
protected:
    LogTest() { fake_platform::reset(); }
    ~LogTest() override { fake_platform::reset(); }
};

void traced() {
    ApiTracker tracker(__PRETTY_FUNCTION__, __LINE__);
}

void tracedThrow() {
    ApiTracker tracker(__PRETTY_FUNCTION__, __LINE__);
    throw std::runtime_error("inside");
}

void tracedOuter() {
    ApiTracker tracker(__PRETTY_FUNCTION__, __LINE__);
    traced();
}

}  // namespace

TEST_F(LogTest, ALineNamesFileFunctionAndLineInTheMainBuffer) {
    const int line = __LINE__ + 1;
    LOGI("load plugin : %s{p:%d]}", "libbleapp.so", 8);
    ASSERT_EQ(fake_platform::lines().size(), 1U);
    const fake_platform::Line written = fake_platform::lines().front();
    EXPECT_EQ(written.logId, 0);
    EXPECT_EQ(written.priority, 4);
    EXPECT_EQ(written.tag, "QVX");
    EXPECT_EQ(written.text, "LogTest.cpp: TestBody(" + std::to_string(line) +
                                ") > load plugin : libbleapp.so{p:8]}");
}

TEST_F(LogTest, EachMacroHasItsPriority) {
    LOGD("debug");
    LOGI("info");
    LOGE("error");
    EXPECT_THAT(fake_platform::transcript(), ElementsAre("D QVX LogTest.cpp: TestBody(#) > debug",
                                                         "I QVX LogTest.cpp: TestBody(#) > info",
                                                         "E QVX LogTest.cpp: TestBody(#) > error"));
}

TEST_F(LogTest, TheBaseNameIsWhatStandsBehindTheLastSlash) {
    static_assert(std::string_view(logging::baseName("/a/b/Plugin.cpp")) == "Plugin.cpp");
    static_assert(std::string_view(logging::baseName("main.cpp")) == "main.cpp");
    static_assert(std::string_view(logging::baseName("a/")).empty());
}

TEST_F(LogTest, ATracerNamesItselfAndTheTracedFunctionInBrackets) {
    { ApiTracker tracker("void CommonDaemon::start()", 22); }
    EXPECT_THAT(fake_platform::transcript(),
                ElementsAre("D QVX log.h: ApiTracker(#) > IN >> [void CommonDaemon::start()(#)]",
                            "D QVX log.h: ~ApiTracker(#) > OUT << [void "
                            "CommonDaemon::start()(#)]"));
    EXPECT_EQ(fake_platform::count("[void CommonDaemon::start()(22)]"), 2);
}

TEST_F(LogTest, ATracerOwnsANameThatIsAString) {
    {
        std::string name = "a name that is too long to be kept within a string object";
        ApiTracker tracker(name, 22);
        name.assign(name.size(), 'x');
    }
    EXPECT_EQ(
        fake_platform::count("[a name that is too long to be kept within a string object(22)]"), 2);
}

TEST_F(LogTest, NestedTracersNest) {
    tracedOuter();
    EXPECT_THAT(
        fake_platform::transcript(),
        ElementsAre("D QVX log.h: ApiTracker(#) > IN >> [void {anonymous}::tracedOuter()(#)]",
                    "D QVX log.h: ApiTracker(#) > IN >> [void {anonymous}::traced()(#)]",
                    "D QVX log.h: ~ApiTracker(#) > OUT << [void {anonymous}::traced()(#)]",
                    "D QVX log.h: ~ApiTracker(#) > OUT << [void {anonymous}::tracedOuter()(#)]"));
}

TEST_F(LogTest, AFunctionThatThrowsIsTracedBeforeTheCatchersLines) {
    try {
        tracedThrow();
    } catch (const std::exception& e) {
        LOGE("Exception : %s", e.what());
    }
    EXPECT_THAT(
        fake_platform::transcript(),
        ElementsAre("D QVX log.h: ApiTracker(#) > IN >> [void {anonymous}::tracedThrow()(#)]",
                    "D QVX log.h: ~ApiTracker(#) > OUT << [void {anonymous}::tracedThrow()(#)]",
                    "E QVX LogTest.cpp: TestBody(#) > Exception : inside"));
}
