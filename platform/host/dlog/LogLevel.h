// The lowest priority that is written, from the environment variable
// CORVANE_LOG_LEVEL: debug, info, warning, error, or the priority's number.
#pragma once

namespace corvane::host {

/// Reads the environment at the first call; a value that isn't allowed is reported once
/// on the standard error and everything is written. Any thread.
int minimumPriority();

}  // namespace corvane::host
