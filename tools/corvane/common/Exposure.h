// Finds files and directories that other users can change. A plugin is code in the daemon's
// process, so its file must be safe from them.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace corvane::tool {

/// Returns a sentence for each way in which users other than root and this one can change the file
/// or directory, judged by its owner and mode. Returns nothing if it can't be examined. Not
/// thread-safe.
std::vector<std::string> exposureOf(const std::filesystem::path& path);

/// The same for a file and its directory. A directory with the sticky bit, such as /tmp, is left
/// out: only a file's owner can replace the file there.
std::vector<std::string> exposureOfFile(const std::filesystem::path& file);

/// Writes the sentences to the standard error as warnings.
void warnOf(const std::vector<std::string>& exposure);

}  // namespace corvane::tool
