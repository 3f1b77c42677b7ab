// An event and its arguments on a command line: its name, then key=value.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "platform/host/events/EventTable.h"
#include "platform/host/events/Values.h"

namespace corvane::host {

/// The event of that name. Throws std::runtime_error, which lists the events with the most
/// similar names.
const Event& eventNamed(std::string_view name);

/// The defaults of `event`, replaced by the values given. Throws std::runtime_error, which
/// names the argument and what is allowed.
Values parseArguments(const Event& event, const std::vector<std::string>& words);

}  // namespace corvane::host
