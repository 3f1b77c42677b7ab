// Checks a library file before it is passed to dlopen.
#pragma once

#include <string>

namespace LibraryFile {

/// Returns true if the file lacks whole pages of a segment that the loader maps, as after an
/// interrupted update: access to such a page would end the process by SIGBUS. Returns false for a
/// file that the loader accepts or refuses itself.
bool isCutOff(const std::string& path);

}  // namespace LibraryFile
