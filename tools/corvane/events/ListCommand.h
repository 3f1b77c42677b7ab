// corvane list: prints the events and their arguments.
#pragma once

#include <string>

namespace corvane::tool {

/// Returns the text output: for each event its meaning, and for each argument a line with its type,
/// default and allowed values.
std::string listText();

/// Returns the JSON output.
std::string listJson();

}  // namespace corvane::tool
