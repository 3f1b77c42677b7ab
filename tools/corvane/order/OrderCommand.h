// corvane order: which plugins the daemon would load, in which order and why.
#pragma once

#include <CLI/CLI.hpp>

namespace corvane::tool {

void addOrderCommand(CLI::App& app);

}  // namespace corvane::tool
