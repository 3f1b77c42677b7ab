// What injection takes at most, so that no peer brings the daemon down.
// docs/injection.md tells users.
#pragma once

#include <cstddef>

namespace corvane::host::limits {

inline constexpr std::size_t mostPeers = 64;
inline constexpr std::size_t mostMessageBytes = 256 * 1024;

}  // namespace corvane::host::limits
