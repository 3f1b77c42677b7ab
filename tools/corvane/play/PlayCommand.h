// corvane play: plays a scenario of events against a running daemon.
#pragma once

#include <CLI/CLI.hpp>
#include <string>

namespace corvane::tool {

void addPlayCommand(CLI::App& app, const std::string& socket);

}  // namespace corvane::tool
