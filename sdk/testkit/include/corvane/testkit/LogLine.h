// One line of the platform log.
#pragma once

#include <ostream>
#include <string>

namespace corvane::testkit {

struct LogLine {
    int priority;  // DLOG_PRIORITY_... of dlog.h
    std::string tag;
    std::string text;

    bool operator==(const LogLine&) const = default;
};

/// Writes "<letter of the priority>/<tag>: <text>", for example "I/MY_PLUGIN: started".
std::ostream& operator<<(std::ostream& out, const LogLine& line);

}  // namespace corvane::testkit
