// What can be told of a plugin without running it.
#pragma once

#include <chrono>

#include "tools/corvane/check/findings/Findings.h"
#include "tools/corvane/check/process/WorkDirectory.h"

namespace corvane::check {

/// Adds to `findings`. Returns whether the plugin can be run. Opens the library in a process
/// of its own, so its static constructors run there.
bool checkStatically(const WorkDirectory& workDirectory, std::chrono::milliseconds limit,
                     Findings& findings);

}  // namespace corvane::check
