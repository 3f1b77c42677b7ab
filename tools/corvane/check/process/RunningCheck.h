// Runs the plugin in a separate process and adds findings.
#pragma once

#include <chrono>
#include <optional>
#include <string>
#include <vector>

#include "tools/corvane/check/findings/Findings.h"
#include "tools/corvane/check/process/PluginProcess.h"
#include "tools/corvane/check/process/WorkDirectory.h"

namespace corvane::check {

/// What the run did.
struct Facts {
    std::optional<std::vector<std::string>> events;  // subscribed to by PLUGIN_INIT
    std::optional<long long> delivered;
    long long jobs = 0;
    long long slowestMs = 0;
    std::string log;  // output of the plugin and the daemon
};

struct Limits {
    std::chrono::milliseconds slow;   // for a callback or job
    std::chrono::milliseconds whole;  // for each run
};

/// Runs the plugin and adds to `findings`.
Facts checkRunning(const WorkDirectory& workDirectory, const Limits& limits, Findings& findings);

/// Adds findings from the result of a run. `plugin` is the file name of the library.
void addOutcome(const ProcessOutcome& outcome, const std::string& plugin, Findings& findings);

}  // namespace corvane::check
