// Names for the addresses of a backtrace.
#pragma once

#include <sys/types.h>

#include <cstdint>
#include <string>
#include <vector>

namespace corvane::check {

/// One text for each address: function, source line if the library tells it, and library.
/// `process` still runs. All addresses but the first are those behind a call.
std::vector<std::string> namesOfFrames(pid_t process, const std::vector<std::uint64_t>& addresses);

/// The C++ name behind a symbol; the symbol itself if it is none.
std::string demangled(const char* symbol);

}  // namespace corvane::check
