// Tests the system information that is read from a file.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <system_info.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

#include "tests/support/process/TemporaryDirectory.h"

namespace {

using testing::HasSubstr;

class SystemInfoTest : public testing::Test {
protected:
    SystemInfoTest() { setenv("CORVANE_SYSTEM_INFO", path().c_str(), 1); }
    ~SystemInfoTest() override { unsetenv("CORVANE_SYSTEM_INFO"); }

    std::string path() const { return m_directory.path() / "info.conf"; }

    void write(const std::string& text) { std::ofstream(path()) << text; }

    // Returns the platform's value, or -1 for an error. Expects the output to be unchanged after an
    // error.
    int ask(const char* key) {
        int value = UNTOUCHED;
        const int result = system_info_get_custom_int(key, &value);
        EXPECT_EQ(result == 0, value != UNTOUCHED);
        return result == 0 ? value : -1;
    }

    static constexpr int UNTOUCHED = 123456;
    TemporaryDirectory m_directory;
};

TEST_F(SystemInfoTest, FindsIntegersByKeysWithDotsAndSlashes) {
    write("com.example/feature.a/b=4\n  spaced  =  -5  \n");
    EXPECT_EQ(ask("com.example/feature.a/b"), 4);
    EXPECT_EQ(ask("spaced"), -5);
    EXPECT_EQ(ask("com.example/feature.a"), -1);
}

TEST_F(SystemInfoTest, IgnoresCommentsBlankLinesAndLineEndsOfOtherSystems) {
    write("# product\n\n   \t\nkey = 7 # seven\r\n#key = 8\nlast = 9");
    testing::internal::CaptureStderr();
    EXPECT_EQ(ask("key"), 7);
    EXPECT_EQ(ask("last"), 9);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

TEST_F(SystemInfoTest, TakesTheLastOfEqualKeys) {
    write("key = 1\nkey = 2\n");
    EXPECT_EQ(ask("key"), 2);
}

TEST_F(SystemInfoTest, ReadsTheFileAgainAtEachCall) {
    write("key = 1\n");
    EXPECT_EQ(ask("key"), 1);
    write("key = 3\n");
    EXPECT_EQ(ask("key"), 3);
}

TEST_F(SystemInfoTest, FailsInSilenceWithoutFileOrKey) {
    testing::internal::CaptureStderr();
    EXPECT_EQ(ask("key"), -1);
    write("other = 1\n");
    EXPECT_EQ(ask("key"), -1);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

TEST_F(SystemInfoTest, ReportsBadLinesAndUsesTheOthers) {
    write("good = 1\nno value\n= 5\nkey = seven\nbig = 2147483648\nhalf = 5x\nlast = 2\n");
    testing::internal::CaptureStderr();
    EXPECT_EQ(ask("last"), 2);
    const auto report = testing::internal::GetCapturedStderr();
    EXPECT_THAT(report, HasSubstr(path() + ":2: there is no '='; a line is \"key = integer\"\n"));
    EXPECT_THAT(report, HasSubstr(path() + ":3: there is no key before the '='\n"));
    EXPECT_THAT(report, HasSubstr(path() + ":4: the value is not an integer\n"));
    EXPECT_THAT(report, HasSubstr(path() + ":5: the value is out of the range of an integer\n"));
    EXPECT_THAT(report, HasSubstr(path() + ":6: the value is not an integer\n"));
    EXPECT_EQ(std::count(report.begin(), report.end(), '\n'), 5);
}

TEST_F(SystemInfoTest, ReadsNoMoreThanAMebibyte) {
    write("first = 1\n" + std::string(1 << 20, '#') + "\nlast = 2\n");
    testing::internal::CaptureStderr();
    EXPECT_EQ(ask("first"), 1);
    EXPECT_EQ(ask("last"), -1);
    EXPECT_THAT(testing::internal::GetCapturedStderr(),
                HasSubstr(path() + ": has more than 1048576 bytes; the rest is ignored\n"));
}

TEST_F(SystemInfoTest, RefusesNullPointers) {
    int value = 0;
    EXPECT_LT(system_info_get_custom_int(nullptr, &value), 0);
    EXPECT_LT(system_info_get_custom_int("key", nullptr), 0);
}

}  // namespace
