// The file with the machine's named integers: lines "key = integer", comments from
// '#' to the end of the line, blank lines.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace corvane::host {

/// The integer named `key` in the file at `path`; the last one if it is given more than
/// once, nothing if there is no such file or key. Every line that can't be understood is
/// reported on the platform log, and the others still count. Any thread.
std::optional<int> readSystemInfo(const std::string& path, std::string_view key);

}  // namespace corvane::host
