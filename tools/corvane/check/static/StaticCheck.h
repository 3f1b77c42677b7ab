// Checks a plugin without running it.
#pragma once

#include <chrono>

#include "tools/corvane/check/findings/Findings.h"
#include "tools/corvane/check/process/WorkDirectory.h"

namespace corvane::check {

/// Adds to `findings`. Returns true if the plugin can be run. Opens the library in a separate
/// process, where its static constructors run.
bool checkStatically(const WorkDirectory& workDirectory, std::chrono::milliseconds limit,
                     Findings& findings);

}  // namespace corvane::check
