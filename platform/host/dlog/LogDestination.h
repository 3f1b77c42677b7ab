// Where the log goes: to the journal, a file or the standard error, as the settings and
// the environment say.
#pragma once

#include <string>
#include <vector>

namespace corvane::host {

class LogBuffer;
struct Settings;

struct LogDestination {
    bool journal;
    int fd;               // if it isn't the journal; -1: there is no place
    LogBuffer* buffer{};  // in front of `fd`; null: each line is written at once
};

/// Opens what the settings ask for, or else the standard error, with a complaint. Called
/// once; what it opens stays open. Errors: std::bad_alloc.
LogDestination openLogDestination(const Settings& settings, std::vector<std::string>& complaints);

}  // namespace corvane::host
