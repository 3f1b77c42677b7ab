// corvane new: makes a plugin project of the installed template.
#pragma once

#include <CLI/CLI.hpp>

namespace corvane::tool {

void addNewCommand(CLI::App& app);

}  // namespace corvane::tool
