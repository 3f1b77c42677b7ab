// Checks every log line of a daemon from start to end, with events.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/support/process/DaemonLog.h"
#include "tests/support/process/Sandbox.h"

using testing::AnyOf;
using testing::IsEmpty;
using testing::MatchesRegex;

namespace {

class DaemonLogTest : public testing::Test {
protected:
    Log wholeLife() {
        m_sandbox.addPlugin("libbleapp.so", "subscriber");
        m_sandbox.addPlugin("liba.so", "init_throws_runtime_error");
        m_sandbox.addPlugin("libb.so", "keeps_profiles");
        m_sandbox.addPlugin("libc.so", "unsubscribes_in_callback");
        m_sandbox.start();
        m_sandbox.emit({"bt-adapter-state-changed"});
        return m_sandbox.terminate().log.ofTags({"QVX", "QVX_TPL_CONTEXT", ""});
    }

    Sandbox m_sandbox;
};

// A log line that reports the entry or exit of a traced scope. The name includes the source line.
struct Scope {
    std::string name;
    bool isOpened;
};

// Returns the part of `text` after `mark`, or an empty string if `text` does not contain it.
std::string behind(const std::string& text, const std::string& mark) {
    const auto at = text.find(mark);
    return at == std::string::npos ? "" : text.substr(at + mark.size());
}

std::vector<Scope> scopesIn(const Log& log) {
    std::vector<Scope> scopes;
    for (const LogLine& line : log.lines()) {
        const std::string traced = behind(line.text, "TPLContext.h : ");
        if (line.text.starts_with("log.h: ApiTracker(")) {
            scopes.push_back({behind(line.text, "IN >> "), true});
        } else if (line.text.starts_with("log.h: ~ApiTracker(")) {
            scopes.push_back({behind(line.text, "OUT << "), false});
        } else if (traced.ends_with(" > Entered")) {
            scopes.push_back({traced.substr(0, traced.find(" > ")), true});
        } else if (traced.ends_with("]> Left")) {
            scopes.push_back({traced.substr(0, traced.find("> ")), false});
        } else {
            continue;
        }
        EXPECT_EQ(line.priority, "D") << line.text;
    }
    return scopes;
}

TEST_F(DaemonLogTest, TracedScopesAreNestedAndEachIsLeft) {
    std::vector<std::string> open;
    const auto scopes = scopesIn(wholeLife());
    ASSERT_GT(scopes.size(), 100U);
    for (const Scope& scope : scopes) {
        if (scope.isOpened) {
            open.push_back(scope.name);
            continue;
        }
        ASSERT_NE(scope.name, "");
        ASSERT_FALSE(open.empty()) << scope.name;
        EXPECT_EQ(open.back(), scope.name);
        open.pop_back();
    }
    EXPECT_THAT(open, IsEmpty());
}

TEST_F(DaemonLogTest, EveryLineNamesItsSourceUnderOneOfTwoTags) {
    const std::string place = "~?\\w+\\([0-9]+\\)";
    const auto daemonLine = MatchesRegex("[a-zA-Z.]+: " + place + " > .*");
    const auto taskLine = MatchesRegex("TPLContext.h : " + place +
                                       "(  .*| \\[0x\\w+\\] > Entered| \\[0x\\w+\\]> Left)");
    const Log log = wholeLife();
    for (const LogLine& line : log.lines()) {
        if (line.tag == "QVX") {
            EXPECT_THAT(line.text, daemonLine);
        } else {
            EXPECT_EQ(line.tag, "QVX_TPL_CONTEXT");
            EXPECT_THAT(line.text, taskLine);
        }
        EXPECT_THAT(line.priority, AnyOf("D", "I", "E")) << line.text;
    }
}

}  // namespace
