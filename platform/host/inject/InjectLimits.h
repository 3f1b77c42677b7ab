// The limits of injection, so that no peer can exhaust the daemon. docs/injection.md lists them.
#pragma once

#include <cstddef>
#include <cstdint>

namespace corvane::host::limits {

inline constexpr std::size_t mostPeers = 64;
inline constexpr std::size_t mostMessageBytes = 256 * 1024;
inline constexpr std::uint64_t mostUnreadAnswers = 1024;
inline constexpr std::uint64_t mostUnreadSignals = 4096;  // of a peer that watches
inline constexpr std::size_t mostWaitingEvents = 64;      // for each delivery thread

}  // namespace corvane::host::limits
