// GoogleTest matchers for what a host shows.
#pragma once

#include <corvane/testkit/Leftovers.h>
#include <corvane/testkit/LogLine.h>
#include <gmock/gmock.h>

#include <string>

namespace corvane::testkit {

/// A log line whose text contains `part`.
inline testing::Matcher<const LogLine&> HasText(const std::string& part) {
    return testing::Field("text", &LogLine::text, testing::HasSubstr(part));
}

/// A log line with exactly this tag.
inline testing::Matcher<const LogLine&> HasTag(const std::string& tag) {
    return testing::Field("tag", &LogLine::tag, tag);
}

/// A log line of this priority: DLOG_PRIORITY_... of dlog.h.
inline testing::Matcher<const LogLine&> HasPriority(int priority) {
    return testing::Field("priority", &LogLine::priority, priority);
}

/// What Host::unload() returns for a plugin that has undone all it did.
MATCHER(LeavesNothingBehind, negation ? "leaves something behind" : "leaves nothing behind") {
    static_cast<void>(result_listener);
    return arg.none();
}

}  // namespace corvane::testkit
