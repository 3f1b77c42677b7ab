// What a plugin's life in a process of its own shows.
#pragma once

#include <chrono>
#include <optional>
#include <string>
#include <vector>

#include "tools/corvane/check/findings/Findings.h"
#include "tools/corvane/check/process/PluginProcess.h"
#include "tools/corvane/check/process/WorkDirectory.h"

namespace corvane::check {

/// What was done, for those who want to know that something was done.
struct Facts {
    std::optional<std::vector<std::string>> events;  // subscribed to by PLUGIN_INIT
    std::optional<long long> delivered;
    long long jobs = 0;
    long long slowestMs = 0;
    std::string log;  // of the plugin and the daemon
};

struct Limits {
    std::chrono::milliseconds slow;
    std::chrono::milliseconds whole;
};

/// Adds to `findings`.
Facts checkRunning(const WorkDirectory& workDirectory, const Limits& limits, Findings& findings);

/// Adds what the end of the process tells. `plugin` is the name of the library's file.
void addOutcome(const ProcessOutcome& outcome, const std::string& plugin, Findings& findings);

}  // namespace corvane::check
