// The beginning of a line of the log.
#pragma once

#include <cstddef>

namespace corvane::host {

/// Room for the longest head.
constexpr std::size_t HEAD_ROOM = 48;

/// Writes "12:34:56.789 4711 I ", local time, the calling thread, the priority's letter, where
/// there is HEAD_ROOM, and returns its size; what stands behind it means nothing. Any thread; never
/// throws.
std::size_t formatHead(char* line, int priority) noexcept;

}  // namespace corvane::host
