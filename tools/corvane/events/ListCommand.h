// corvane list: the events that can be injected, with their arguments.
#pragma once

#include <CLI/CLI.hpp>
#include <string>

namespace corvane::tool {

void addListCommand(CLI::App& app);

/// What the command prints: for each event its meaning, and a line for each argument with
/// type, default and what is allowed.
std::string listText();

/// The same as JSON.
std::string listJson();

}  // namespace corvane::tool
