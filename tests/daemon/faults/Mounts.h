// File systems that only a test's daemon sees, on directories of its sandbox.
#pragma once

#include <string>
#include <vector>

/// Commands that start the daemon where `script`, a shell's, has been run before: it may mount. As
/// the superuser or as any user; empty where the system allows neither.
std::vector<std::string> starterWithMounts(const std::string& script);
