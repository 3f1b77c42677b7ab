// corvane emit: makes a running daemon deliver an event.
#pragma once

#include <CLI/CLI.hpp>

namespace corvane::tool {

/// Errors leave the parse as std::runtime_error.
void addEmitCommand(CLI::App& app);

}  // namespace corvane::tool
