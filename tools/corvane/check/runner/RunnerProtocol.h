// What `corvane check` and corvane-check-runner agree on, besides the JSON lines of Report.h.
#pragma once

#include <signal.h>

#include <string_view>

namespace corvane::check {

/// The command sends this signal to a thread of the runner to learn where the thread hangs.
/// Neither the main-loop library nor plugins are likely to use it.
constexpr int HANG_SIGNAL = SIGXCPU;

/// The step in which tasks of the plugin are dropped. The name of an event follows.
constexpr std::string_view DROPPING_STEP = "the dropping of tasks requested in the callback of ";

}  // namespace corvane::check
