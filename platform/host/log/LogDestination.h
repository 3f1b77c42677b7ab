// Where the log goes: the journal, a file or the standard error, as the settings and the
// environment say.
#pragma once

#include <string>
#include <vector>

namespace corvane::host {

struct Settings;

struct LogDestination {
    bool isJournal;
    int fd;  // for lines, unless it is the journal; -1 if there is no place for them
};

/// Opens what the settings name. If that fails, adds a complaint and takes the standard error.
/// Called once; what it opens stays open. Errors: std::bad_alloc.
LogDestination openLogDestination(const Settings& settings, std::vector<std::string>& complaints);

}  // namespace corvane::host
