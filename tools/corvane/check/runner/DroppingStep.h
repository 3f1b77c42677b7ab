// The step in which a plugin's tasks are dropped: host and command agree on its name.
#pragma once

#include <string_view>

namespace corvane::check {

/// Followed by the name of an event.
constexpr std::string_view droppingStep = "the dropping of tasks requested in the callback of ";

}  // namespace corvane::check
