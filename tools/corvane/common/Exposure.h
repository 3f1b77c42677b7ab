// Who else may change what a daemon runs: a plugin is code in its process.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace corvane::tool {

/// A sentence about each way in which others than root and this user may replace or change the file
/// or directory, going by its owner and mode. Empty as well if it can't be examined. One thread.
std::vector<std::string> exposureOf(const std::filesystem::path& path);

/// The same for a file and its directory. Of a directory in which only a file's owner may replace
/// it, such as /tmp, nothing is said.
std::vector<std::string> exposureOfFile(const std::filesystem::path& file);

/// Writes the sentences on the standard error, as warnings of the command.
void warnOf(const std::vector<std::string>& exposure);

}  // namespace corvane::tool
