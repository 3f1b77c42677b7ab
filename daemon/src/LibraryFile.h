// What has to be known of a library file before the loader may have it.
#pragma once

#include <string>

namespace LibraryFile {

/// Whether the file ends before the contents that its head promises, as after an update that was
/// broken off. The loader would map them nevertheless, and touching them would end the process.
/// False for what is no library at all: that the loader notices itself.
bool isCutOff(const std::string& path);

}  // namespace LibraryFile
