// The limits of injection, so that no peer can exhaust the daemon. docs/injection.md lists them.
#pragma once

#include <cstddef>
#include <cstdint>

namespace corvane::host::limits {

inline constexpr std::size_t MOST_PEERS = 64;
inline constexpr std::size_t MOST_MESSAGE_BYTES = 256 * 1024;
inline constexpr std::uint64_t MOST_UNREAD_ANSWERS = 1024;
inline constexpr std::uint64_t MOST_UNREAD_SIGNALS = 4096;  // of a peer that watches
inline constexpr std::size_t MOST_WAITING_EVENTS = 64;      // for each delivery thread

}  // namespace corvane::host::limits
