// The signal by which the command asks a thread of the host where it hangs.
#pragma once

#include <signal.h>

namespace corvane::check {

/// None that the main-loop library takes for itself, nor one that plugins are likely to use.
constexpr int hangSignal = SIGXCPU;

}  // namespace corvane::check
