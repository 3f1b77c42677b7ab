// GoogleTest matchers for the results of Host.
#pragma once

#include <corvane/testkit/Leftovers.h>
#include <corvane/testkit/LogLine.h>
#include <gmock/gmock.h>

#include <string>

namespace corvane::testkit {

/// Matches a log line whose text contains `part`.
inline testing::Matcher<const LogLine&> HasText(const std::string& part) {
    return testing::Field("text", &LogLine::text, testing::HasSubstr(part));
}

/// Matches a log line with exactly this tag.
inline testing::Matcher<const LogLine&> HasTag(const std::string& tag) {
    return testing::Field("tag", &LogLine::tag, tag);
}

/// Matches a log line of this priority (DLOG_PRIORITY_... in dlog.h).
inline testing::Matcher<const LogLine&> HasPriority(int priority) {
    return testing::Field("priority", &LogLine::priority, priority);
}

/// Matches the result of Host::unload() for a plugin that has undone everything.
MATCHER(LeavesNothingBehind, negation ? "leaves something behind" : "leaves nothing behind") {
    static_cast<void>(result_listener);
    return arg.none();
}

}  // namespace corvane::testkit
