// What has to be known of a library file before the loader may have it.
#pragma once

#include <string>

namespace LibraryFile {

/// Returns true if the file lacks whole pages of a segment that the loader maps, as after an update
/// that was broken off: touching such a page would end the process by SIGBUS. False for everything
/// that the loader accepts, or refuses itself.
bool isCutOff(const std::string& path);

}  // namespace LibraryFile
