// Decides whether private data is logged.
#include "plugins/event-log/Private.h"

#include <cstdlib>
#include <string_view>

namespace eventlog {

namespace {

bool shown = false;

}  // namespace

void readPrivacy() {
    const char* const value = std::getenv("CORVANE_EVENT_LOG_PRIVATE");
    shown = value != nullptr && value == std::string_view("show");
}

bool showsPrivate() {
    return shown;
}

}  // namespace eventlog
