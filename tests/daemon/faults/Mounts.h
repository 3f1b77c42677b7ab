// Mounts file systems that only a test's daemon sees, on directories of its sandbox.
#pragma once

#include <string>
#include <vector>

/// Returns a command that runs the shell script `script`, which may mount, in a new mount namespace
/// and then starts the daemon there. Works for any user if the system allows user namespaces.
/// Returns an empty vector if the system does not allow mounts.
std::vector<std::string> starterWithMounts(const std::string& script);
