// corvane check: tries a plugin out before it goes into a daemon.
#pragma once

#include <CLI/CLI.hpp>

namespace corvane::tool {

/// `status` becomes 1 if something is found. The command throws check::CheckError if the
/// plugin can't be checked.
void addCheckCommand(CLI::App& app, int& status);

}  // namespace corvane::tool
