// corvane watch: shows what happens to the callbacks of a running daemon.
#pragma once

#include <CLI/CLI.hpp>
#include <string>

namespace corvane::tool {

void addWatchCommand(CLI::App& app, const std::string& socket);

}  // namespace corvane::tool
