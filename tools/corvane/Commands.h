// The subcommands of corvane. Each function adds one to the command line. A command that fails
// throws std::runtime_error or a class derived from it out of CLI::App::parse.
#pragma once

#include <CLI/CLI.hpp>
#include <string>

namespace corvane::tool {

// The value of --socket is read when the command runs, so `socket` must outlive the parse.
void addEmitCommand(CLI::App& app, const std::string& socket);
void addPlayCommand(CLI::App& app, const std::string& socket);
void addWatchCommand(CLI::App& app, const std::string& socket);

void addListCommand(CLI::App& app);
void addNewCommand(CLI::App& app);
void addOrderCommand(CLI::App& app);

/// Sets `status` to 1 if the check has findings. The command throws check::CheckError if the
/// plugin can't be checked.
void addCheckCommand(CLI::App& app, int& status);

/// A hidden command: it prints the words that the completion script offers.
void addCompleteCommand(CLI::App& app);

}  // namespace corvane::tool
