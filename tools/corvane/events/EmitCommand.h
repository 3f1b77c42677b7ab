// corvane emit: makes a running daemon deliver an event.
#pragma once

#include <CLI/CLI.hpp>
#include <string>

namespace corvane::tool {

/// `socket`, as the command line gives it, is read when the command runs. Errors leave the
/// parse as std::runtime_error. The same holds for the other commands.
void addEmitCommand(CLI::App& app, const std::string& socket);

/// What became of an event, in words.
std::string deliveredText(unsigned called);

}  // namespace corvane::tool
