// Prints log lines and leftovers for GoogleTest.
#include <corvane/testkit/Leftovers.h>
#include <corvane/testkit/LogLine.h>
#include <dlog.h>

namespace corvane::testkit {

namespace {

std::string letterOf(int priority) {
    switch (priority) {
        case DLOG_PRIORITY_DEBUG:
            return "D";
        case DLOG_PRIORITY_INFO:
            return "I";
        case DLOG_PRIORITY_WARNING:
            return "W";
        case DLOG_PRIORITY_ERROR:
            return "E";
        default:
            return std::to_string(priority);
    }
}

}  // namespace

std::ostream& operator<<(std::ostream& out, const LogLine& line) {
    return out << letterOf(line.priority) << '/' << line.tag << ": " << line.text;
}

std::ostream& operator<<(std::ostream& out, const Leftovers& leftovers) {
    if (leftovers.none()) {
        return out << "nothing";
    }
    const char* separator = "still subscribed to ";
    for (const auto& event : leftovers.subscriptions) {
        out << separator << event;
        separator = ", ";
    }
    if (leftovers.libraryStays) {
        out << (leftovers.subscriptions.empty() ? "" : "; ")
            << "the library stays in the process though it was closed: does it export more than "
               "PLUGIN_INIT and PLUGIN_DEINIT?";
    }
    return out;
}

}  // namespace corvane::testkit
