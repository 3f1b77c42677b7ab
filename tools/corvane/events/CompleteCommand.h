// corvane complete: what the shell's completion asks.
#pragma once

#include <CLI/CLI.hpp>
#include <string>
#include <vector>

namespace corvane::tool {

void addCompleteCommand(CLI::App& app);

/// What may come next: after nothing the events, after an event its "key=", after an event
/// and a key the values. Empty for names that don't exist.
std::vector<std::string> completions(const std::string& event, const std::string& key);

}  // namespace corvane::tool
