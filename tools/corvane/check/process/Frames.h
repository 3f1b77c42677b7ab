// Symbolizes the addresses of a backtrace.
#pragma once

#include <sys/types.h>

#include <cstdint>
#include <string>
#include <vector>

namespace corvane::check {

/// Returns a text for each address: function, source line if there is debug information, and
/// library. `process` must still exist. All addresses but the first are return addresses.
std::vector<std::string> namesOfFrames(pid_t process, const std::vector<std::uint64_t>& addresses);

/// Demangles a C++ symbol. Returns other symbols unchanged.
std::string demangled(const char* symbol);

}  // namespace corvane::check
