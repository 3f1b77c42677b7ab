// The lowest priority that is written.
#include "LogLevel.h"

#include "LogStream.h"

#include <dlog.h>

#include <array>
#include <cstdlib>
#include <string>
#include <string_view>

namespace corvane::host {

namespace {

struct Level {
    std::string_view name;
    std::string_view number;
    int priority;
};

constexpr std::array levels{
    Level{"debug", "3", DLOG_PRIORITY_DEBUG},
    Level{"info", "4", DLOG_PRIORITY_INFO},
    Level{"warning", "5", DLOG_PRIORITY_WARNING},
    Level{"error", "6", DLOG_PRIORITY_ERROR},
};

int readLevel() {
    const char* const value = std::getenv("CORVANE_LOG_LEVEL");
    if (value == nullptr || *value == '\0') {
        return DLOG_PRIORITY_DEBUG;
    }
    for (const auto& level : levels) {
        if (value == level.name || value == level.number) {
            return level.priority;
        }
    }
    const std::string complaint = std::string("CORVANE_LOG_LEVEL is \"") + value +
                                  "\"; it must be debug, info, warning, error or 3 to 6\n";
    writeStandardError(complaint.data(), complaint.size());
    return DLOG_PRIORITY_DEBUG;
}

}  // namespace

int minimumPriority() {
    static const int priority = readLevel();
    return priority;
}

}  // namespace corvane::host
